// Which messages the handset should hold at the end: those that a successful call has saved, but for as many as may
// have been deleted since, one by one; and none that were there when all drafts were last deleted.
#pragma once

#include <chrono>
#include <mutex>
#include <set>
#include <shared_mutex>
#include <vector>

#include "refusals.h"
#include "store.h"

namespace soak {

class SavedMessages
{
public:
    static constexpr std::int32_t kBox = 1; // of the drafts

    SavedMessages(const FindExport& find, const Refusals& refusals);

    // Each makes one call, and returns its code.
    PHN_ERROR Save(std::uint32_t value);
    PHN_ERROR Delete(std::uint32_t index);
    PHN_ERROR DeleteAll();

    std::vector<std::string> Compare(const simulator::Phone& phone) const;

private:
    decltype(&PHN_SaveMessage) save_;
    decltype(&PHN_DeleteMessage) delete_;
    decltype(&PHN_DeleteAllMessages) deleteAll_;
    const Refusals& refusals_;
    std::shared_mutex all_; // exclusively by who deletes all of them
    std::mutex mutex_;      // of what follows
    std::set<std::string> saved_, gone_;
    std::size_t mayBeGone_ = 0;
    std::chrono::steady_clock::time_point doubtful_{}; // until then a deletion that failed may yet reach the handset
};

} // namespace soak
