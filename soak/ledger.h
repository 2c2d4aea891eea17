// What the handset should hold at the end: each host thread writes and deletes events of its own, and knows after each
// call what may be there. A call that succeeded leaves no doubt; one that failed may have reached the handset or not.
#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <shared_mutex>
#include <string>
#include <vector>

#include "library.h"
#include "simulator/phone/phone.h"

namespace soak {

class Ledger
{
public:
    static constexpr std::uint32_t kFirst = 30; // event index; those before it are anybody's
    static constexpr std::uint32_t kPerThread = 4;
    static constexpr unsigned kThreads = 16;

    explicit Ledger(const Library& library);

    // Each makes one call for the thread that owns the slot, and returns its code.
    PHN_ERROR Write(unsigned thread, std::uint32_t slot, std::uint32_t value);
    PHN_ERROR Delete(unsigned thread, std::uint32_t slot);
    PHN_ERROR DeleteAll();

    // What the handset holds and should not, or the other way round: a sentence for each.
    std::vector<std::string> Compare(const simulator::Phone& phone) const;

private:
    using Texts = std::set<std::string>; // the descriptions that may be there; an empty one is no event

    static std::size_t Place(unsigned thread, std::uint32_t slot) { return thread * kPerThread + slot; }
    PHN_ERROR Note(Texts& texts, const std::string& text, PHN_ERROR code);

    decltype(&PHN_SetEvent) setEvent_;
    decltype(&PHN_DeleteEvent) deleteEvent_;
    decltype(&PHN_DeleteAllEvents) deleteAll_;
    std::shared_mutex all_; // exclusively by who deletes all of them
    std::array<Texts, kThreads * kPerThread> slots_;
};

} // namespace soak
