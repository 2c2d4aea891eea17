// What a store of the handset should hold at the end: each host thread writes and deletes entries of its own, and knows
// after each call what may be there. A call that succeeded leaves no doubt, unless the handset has refused it; one that
// failed may have reached the handset or not, and may yet reach it: on the other port, which is asleep.
#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <map>
#include <shared_mutex>
#include <span>
#include <vector>

#include "refusals.h"
#include "store.h"

namespace soak {

class Ledger
{
public:
    static constexpr std::uint32_t kPerThread = 4;
    static constexpr unsigned kThreads = 16;

    Ledger(Store store, const Refusals& refusals, const simulator::Phone& phone);

    // Each makes one call for the thread that owns the slot, and returns its code.
    PHN_ERROR Write(unsigned thread, std::uint32_t slot, std::uint32_t value);
    PHN_ERROR Delete(unsigned thread, std::uint32_t slot);
    PHN_ERROR DeleteAll();

    // What the handset holds and should not, or the other way round: a sentence for each.
    std::vector<std::string> Compare(const simulator::Phone& phone) const;

private:
    using Clock = std::chrono::steady_clock;

    // An empty text is no entry.
    struct Slot
    {
        std::string text;
        std::map<std::string, Clock::time_point> doubtful; // what may be there instead, and since when
    };

    static std::size_t Place(unsigned thread, std::uint32_t slot) { return thread * kPerThread + slot; }
    PHN_ERROR Make(std::span<Slot> slots, const std::string& text, std::uint32_t command,
                   const std::function<PHN_ERROR()>& call) const;

    const Store store_;
    const Refusals& refusals_;
    std::shared_mutex all_; // exclusively by who deletes all of them
    std::array<Slot, kThreads * kPerThread> slots_;
};

} // namespace soak
