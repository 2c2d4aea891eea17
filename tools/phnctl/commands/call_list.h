// The calls of a handset, read list by list: what it remembers, and how it is shown. Used by the calls commands.
#pragma once

#include "phnctl/handset/handset.h"
#include "phnctl/handset/labels.h"
#include "phnctl/plan/losses.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace phnctl {

struct StoredCall
{
    std::int32_t list = 0;
    PHN_CALL_ENTRY entry{};
};

// All lists, or the one that is given.
std::vector<std::int32_t> CallLists(std::optional<std::int32_t> only);

// List after list, in the handset's order. Throws Refusal.
std::vector<StoredCall> ReadCalls(const Handset& handset, const std::vector<std::int32_t>& lists);

// Throws Refusal: a count of 0 alone does not tell an empty list from a failure.
std::uint32_t CountCalls(const Handset& handset, std::int32_t list);

// As the handset says it: nothing tells whether it is local time. Empty when it has no date.
std::string ShowTime(const PHN_CALL_ENTRY& entry);

// All of them: there is no call that stores one.
Losses LossesOf(const std::vector<StoredCall>& calls);

// {"calls":[...]}: as `list --json` answers, and as copies are kept.
std::string CallsJson(const std::vector<StoredCall>& calls, const Labels& labels);

} // namespace phnctl
