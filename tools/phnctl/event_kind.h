// Calendar events as a kind of entry. Used by the events commands, by backup and by restore.
#pragma once

#include "phnctl/entry_kind.h"

namespace phnctl {

const EntryKind& EventKind();

// "15 minutes before", "1 day before", "at the start".
std::string AlarmInWords(const std::string& minutes);

// "every weekday"; as it is if it is no rule that a handset repeats by.
std::string RuleInWords(const std::string& rule);

} // namespace phnctl
