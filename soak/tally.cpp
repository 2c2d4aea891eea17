#include "tally.h"

#include <algorithm>
#include <cstdio>

#include "phnnrv.hpp"
#include "surroundings.h"

namespace soak {

void Tally::Add(const std::string& name, std::uint32_t code, bool isCount, Milliseconds took)
{
    const std::string_view known = phnnrv::Error{isCount ? 0 : code}.name();
    if (known.empty())
        AddFinding(name + " gave " + std::to_string(code) + ", which is no code");
    const std::scoped_lock lock(mutex_);
    ++calls_;
    if (!isCount)
        ++codes_[code];
    Milliseconds& longest = longest_[name];
    longest = std::max(longest, took);
}

void Tally::AddFinding(const std::string& finding)
{
    const std::scoped_lock lock(mutex_);
    ++findings_[finding];
}

bool Tally::Report(const std::map<std::string, std::chrono::milliseconds>& bounds, std::chrono::milliseconds turns)
{
    std::string worst = "none";
    double worstShare = 0;
    for (const auto& [name, took] : longest_) {
        const auto bound = bounds.find(name);
        const std::chrono::milliseconds own = bound == bounds.end() ? std::chrono::milliseconds(0) : bound->second;
        const Milliseconds stated = took / kScale;
        if (const double share = stated / Milliseconds(own + turns); share > worstShare) {
            worstShare = share;
            char text[200];
            std::snprintf(text, sizeof text,
                          "%s, %.0f s of stated time; its own bound is %.0f s, behind %.0f s of others' turns",
                          name.c_str(), stated.count() / 1000, Milliseconds(own).count() / 1000,
                          Milliseconds(turns).count() / 1000);
            worst = text;
        }
    }
    if (worstShare > 1)
        AddFinding("a call outlasted its bound");
    std::printf("calls          %llu\n", static_cast<unsigned long long>(calls_));
    for (const auto& [code, count] : codes_)
        std::printf("  %-40s %llu\n", std::string(phnnrv::Error{code}.name()).c_str(),
                    static_cast<unsigned long long>(count));
    std::printf("longest call   %s\n", worst.c_str());
    return Judge();
}

bool Tally::Judge() const
{
    for (const auto& [finding, count] : findings_)
        std::printf("FINDING        %s (%llu times)\n", finding.c_str(), static_cast<unsigned long long>(count));
    return findings_.empty();
}

} // namespace soak
