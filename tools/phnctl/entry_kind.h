// What the tool has to know of one kind of entry (contacts, events) to list, export, import, delete and restore it. A
// new kind derives from EntryKind and hands itself to EntryCommands (entry_commands.h); plan, apply, progress, copies
// and reports are the same for all of them. Objects are stateless and live as long as the program.
#pragma once

#include "phnctl/entry.h"
#include "phnctl/handset.h"
#include "phnctl/report.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace phnctl {

// An entry of the handset under the index that the library gives it. Indexes hold for one run only: the handset may
// store an entry under another number, so across runs entries are found by what they are.
struct StoredEntry
{
    std::uint32_t index = 0;
    Entry entry;
};

class EntryKind
{
public:
    EntryKind(std::string one, std::string many, std::string extension)
        : m_one(std::move(one)), m_many(std::move(many)), m_extension(std::move(extension))
    {
    }
    virtual ~EntryKind() = default;
    EntryKind(const EntryKind&) = delete;
    EntryKind& operator=(const EntryKind&) = delete;

    const std::string& One() const { return m_one; }             // "contact"
    const std::string& Many() const { return m_many; }           // "contacts": the command's word and the JSON member
    const std::string& Extension() const { return m_extension; } // of its files: ".vcf"

    // The handset's entries. All throw Refusal; Read gives nothing where nothing is stored.
    virtual std::optional<Entry> Read(const Handset& handset, std::uint32_t index) const = 0;
    virtual void Write(const Handset& handset, std::uint32_t index, const Entry& entry) const = 0;
    virtual void Delete(const Handset& handset, std::uint32_t index) const = 0;
    virtual void DeleteAll(const Handset& handset) const = 0;

    // Files. Parse makes every entry of a file's text ready for the handset, or says why it cannot be; it throws
    // nothing, however broken the text is. What Format writes, Parse reads back without a loss.
    virtual std::vector<Candidate> Parse(const std::string& file, const std::string& text) const = 0;
    virtual std::string Format(std::span<const StoredEntry> entries) const = 0;

    // Comparing. Entries with the same key are taken for the same thing before and after a change.
    virtual std::string Title(const Entry& entry) const = 0;
    virtual std::string Key(const Entry& entry) const { return Title(entry); }
    // What the handset would hold if an entry that was read were written back; entries are compared in this form.
    virtual Entry Storable(const Entry& read) const { return read; }
    // What a file's entry does not say is taken from the entry that it replaces (null: none).
    virtual Entry Complete(const Entry& wanted, const Entry* replaced) const = 0;

    // True when the text looks as if the library had replaced characters that have no place in the code page.
    virtual bool LooksGarbled(const Entry&) const { return false; }

    // For people: the columns of `list` behind the index, and the name of a property.
    virtual std::vector<std::string> Columns() const = 0;
    virtual std::vector<std::string> Row(const Entry& entry) const = 0;
    virtual std::string Label(const std::string& property) const = 0;
    // Fields that say more about properties than their values do; each has the property as its key.
    virtual std::vector<Field> Details(const Handset& handset, const Entry& entry) const = 0;

private:
    const std::string m_one;
    const std::string m_many;
    const std::string m_extension;
};

} // namespace phnctl
