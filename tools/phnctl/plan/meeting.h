// How entries of files meet those of the handset, for every kind that tells which may be the same thing. Used by the
// kinds, which add what only they know.
#pragma once

#include "phnctl/plan/plan.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace phnctl {

// What a file's entry makes of one of the handset.
struct Outcome
{
    Entry target;
    std::vector<Note> notes{};
};

struct MeetingRules
{
    // Only entries with the same key meet.
    std::function<std::string(const Entry&)> key;
    // Nothing: the two are not the same thing, or cannot become one.
    std::function<std::optional<Outcome>(const Candidate&, const Entry& present)> outcome;
};

// Each entry of the handset meets one of the files, `presents` being in the form in which entries are compared. Entries
// that are equal meet first, then those of which nothing changes, then those of which least changes. What is left is
// added, unless the files held it before.
Plan Meet(const EntryForm& form, const MeetingRules& rules, std::vector<Candidate> candidates,
          const std::vector<StoredEntry>& presents);

} // namespace phnctl
