// How many things the entries of files are, before the handset is looked at: repetitions, several entries for one
// person, and copies of one card. Used by the making of plans alone.
#pragma once

#include "phnctl/plan/entry_form.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace phnctl {

class Counts
{
public:
    // The form must live longer.
    explicit Counts(const EntryForm& form) : m_form(form) {}

    // False for what the files held before.
    bool Add(const Candidate& candidate);

    // Entries of one key with a mark in common are one.
    bool IsOnlyOne(const std::string& key) const { return CountOf(m_things, key) == 1; }
    // True when several say that they were made of the entry that this one was made of.
    bool IsCopied(const std::string& origin) const { return CountOf(m_origins, origin) > 1; }

private:
    using Numbers = std::map<std::string, std::size_t>;

    static std::size_t CountOf(const Numbers& numbers, const std::string& text)
    {
        const auto found = numbers.find(text);
        return found == numbers.end() ? 0 : found->second;
    }

    const EntryForm& m_form;
    Numbers m_things; // of each key
    Numbers m_origins;
    std::set<std::pair<std::string, std::string>> m_marks; // with their keys
    std::set<std::string> m_seen;
};

} // namespace phnctl
