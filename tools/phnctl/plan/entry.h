// One contact, event or other entry as the tool holds it between the handset and a file: named values in UTF-8, in the
// order in which the handset keeps them. What a kind of entry is made of stands in its EntryKind; plans, comparisons
// and reports know nothing but this.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace phnctl {

struct EntryField
{
    std::string property;
    std::string value;

    bool operator==(const EntryField&) const = default;
};

struct Entry
{
    std::vector<EntryField> fields;

    // The value of the first field of that name, or null.
    const std::string* Find(std::string_view property) const;

    // All of it in one text, other for other entries.
    std::string Text() const;

    bool operator==(const Entry&) const = default;
};

// An entry of the handset under the index that the library gives it. Indexes hold for one run only: the handset may
// store an entry under another number, so across runs entries are found by what they are.
struct StoredEntry
{
    std::uint32_t index = 0;
    Entry entry;
};

// What becomes of a part of a file's entry that does not go over as it is.
struct Note
{
    std::string code;     // stable: "name-cut"
    std::string property; // as the file calls it; empty: the whole entry
    std::size_t line = 0; // in the file; 0: unknown
    std::string text;     // for people
};

// The end of the note on a property that the handset has no place for; of several such the report makes one line.
inline constexpr const char* kNoPlace = "has no place for it";

// An entry of a file, made ready for the handset.
struct Candidate
{
    std::string file;
    std::size_t line = 0; // where it begins
    Entry entry;
    std::vector<Note> notes;
    bool fits = true;         // false: the handset cannot hold it; the last note says why
    bool isMeant = true;      // false: it is nothing to store (a to-do among events); the last note says why
    bool hasLostText = false; // the file says of itself that characters of it were lost to a code page
    Entry about{};            // what the file says of it beside that, in its kind's own words; never stored
};

struct Difference
{
    std::string property;
    std::string before; // empty: not there
    std::string after;  // empty: gone
};

// Field by field, in the order of `after`; what only `before` has comes last.
std::vector<Difference> Differences(const Entry& before, const Entry& after);

} // namespace phnctl
