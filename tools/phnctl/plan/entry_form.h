// How entries of one sort are named and compared. Plans and their reports need no more of a sort than this; what can be
// read and written one by one under indexes is an EntryKind besides. Objects are stateless and live as long as the
// program.
#pragma once

#include "phnctl/plan/entry.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace phnctl {

// An entry of the handset under the index that the library gives it. Indexes hold for one run only: the handset may
// store an entry under another number, so across runs entries are found by what they are.
struct StoredEntry
{
    std::uint32_t index = 0;
    Entry entry;
};

struct Displaced
{
    EntryField wanted;
    std::string place; // the property under which it went
};

// An entry with the values of two.
struct Merged
{
    Entry entry;
    std::vector<EntryField> kept{};     // what only the handset's holds
    std::vector<Displaced> displaced{}; // what only the file's holds, in another place than it asked for
    std::vector<EntryField> leftOut{};  // what only the file's holds, and no place is left for
};

// What an entry is to the one of a file that was too much for one entry of the handset.
struct EntryPart
{
    std::string series; // its mark, as candidates have it; empty: the entry stands for itself
    std::string words;  // which part, for people
};

class EntryForm
{
public:
    EntryForm(std::string one, std::string many) : m_one(std::move(one)), m_many(std::move(many)) {}
    virtual ~EntryForm() = default;
    EntryForm(const EntryForm&) = delete;
    EntryForm& operator=(const EntryForm&) = delete;

    const std::string& One() const { return m_one; }   // "contact"
    const std::string& Many() const { return m_many; } // "contacts": the command's word and the JSON member

    // For people: an entry in a few words, and the name of a property.
    virtual std::string Title(const Entry& entry) const = 0;
    virtual std::string Label(const std::string& property) const = 0;

    // Entries with the same key are taken for the same thing before and after a change.
    virtual std::string Key(const Entry& entry) const { return Title(entry); }
    // True where two entries with the same key are a mistake.
    virtual bool HasUniqueKeys() const { return false; }
    // False where the handset can take new entries only: then nothing is changed, and what is not there is added.
    virtual bool CanChange() const { return true; }
    // What the handset would hold if an entry that was read were written back; entries are compared in this form.
    virtual Entry Storable(const Entry& read) const { return read; }
    // What a file's entry does not say is taken from the entry that it replaces (null: none).
    virtual Entry Complete(const Entry& wanted, const Entry* replaced) const = 0;
    // True where entries consist of values of which some may be added and others stay. There, a common key is a name
    // that several may have, and two entries are surely the same only when they have a mark in common besides: what one
    // person alone has, as a rule.
    virtual bool CanMerge() const { return false; }
    // Where two have different values in one place, the handset's stays, unless it is what the file's entry was made
    // of.
    virtual Merged Merge(const Entry& wanted, const Entry& present, const std::string& /*origin*/) const
    {
        return {Complete(wanted, &present)};
    }
    virtual std::vector<std::string> Marks(const Entry&) const { return {}; }
    // What a file says of an entry that it was made of, in the form in which entries are compared; empty: nothing.
    virtual std::string Origin(const Entry&) const { return {}; }

    // Of which other entry of a file this one is a part.
    virtual EntryPart PartOf(const Entry&) const { return {}; }

private:
    const std::string m_one;
    const std::string m_many;
};

} // namespace phnctl
