// Contacts as a kind of entry. Used by the contacts commands, by backup and by restore.
#pragma once

#include "phnctl/plan/entry_kind.h"

namespace phnctl {

const EntryKind& ContactKind();

} // namespace phnctl
