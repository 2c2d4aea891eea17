// Calendar events as a kind of entry. Used by the events commands, by backup and by restore.
#pragma once

#include "phnctl/plan/entry_kind.h"

namespace phnctl {

const EntryKind& EventKind();

} // namespace phnctl
