// Which of the cuts of a walk a run makes: every so many (PHNNRV_CUTS_EVERY; 1: all) from an offset (PHNNRV_CUTS_FROM)
// that moves from day to day.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <string>

class CutSample
{
public:
    // Is the next one made?
    bool Take()
    {
        const bool isTaken = asked_++ % every_ == from_ % every_;
        taken_ += isTaken;
        return isTaken;
    }
    unsigned Taken() const { return taken_; }
    std::string Text() const
    {
        return "PHNNRV_CUTS_EVERY=" + std::to_string(every_) + " PHNNRV_CUTS_FROM=" + std::to_string(from_);
    }

private:
    static unsigned Setting(const char* name, unsigned otherwise)
    {
        const char* const value = std::getenv(name);
        return value ? static_cast<unsigned>(std::strtoul(value, nullptr, 10)) : otherwise;
    }

    const unsigned every_ = std::max(1u, Setting("PHNNRV_CUTS_EVERY", 20));
    const unsigned from_ = Setting("PHNNRV_CUTS_FROM", static_cast<unsigned>(std::time(nullptr) / 86400 * 7));
    unsigned asked_ = 0;
    unsigned taken_ = 0;
};
