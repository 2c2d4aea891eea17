// Which events are the same, by their ids, and what becomes of the series of which earlier imports and other files hold
// other versions. Used by the event kind.
#pragma once

#include "phnctl/plan/entry_kind.h"
#include "phnctl/plan/plan.h"

#include <string>
#include <vector>

namespace phnctl {

inline constexpr const char* kOlderVersion = "older-version";

// The id; what has none goes by its text and its start.
std::string EventKey(const Entry& event);

// Events of one key meet. Of a series that several files hold in different versions only the newest is meant.
Plan MeetEvents(const EntryKind& kind, std::vector<Candidate> candidates, const Inventory& inventory);

// What earlier imports made of an event of the files, and what it no longer becomes, is to be deleted: the parts of a
// series that had other exceptions then. Not if the files take it back, or the handset cannot hold what it becomes:
// then a note says what stays.
void DeleteStaleParts(const EntryKind& kind, Plan& plan, const Inventory& inventory);

} // namespace phnctl
