// How often the handset has refused each command, whatever became of its reply: faults that fall together may make a
// success of it, and nobody looks at the result of command 33. Told on the serving threads, before a reply is sent.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>

#include "simulator/handset/exchange.h"

namespace soak {

// More than a handset with the faults of a run sleeps over a request that has come: so long after a call has failed, it
// may still be carried out.
inline constexpr std::chrono::seconds kLate{2};

class Refusals
{
public:
    void Heed(const simulator::Exchange& exchange)
    {
        const bool isRefused = std::ranges::any_of(exchange.reply, [](const simulator::Field& field) {
            return (field.name == "status" || field.name == "result") && field.value != "0";
        });
        if (isRefused && exchange.command < counts_.size())
            ++counts_[exchange.command];
    }

    unsigned Of(std::uint32_t command) const { return counts_.at(command); }

private:
    std::array<std::atomic<unsigned>, 64> counts_{};
};

} // namespace soak
