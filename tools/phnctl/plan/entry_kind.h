// What the tool has to know of one kind of entry (contacts, events) to list, export, import, delete and restore it. A
// new kind derives from EntryKind and hands itself to EntryCommands (commands/entries); apply, progress, copies and
// reports are the same for all of them, and meeting.h has what they share in making a plan.
#pragma once

#include "phnctl/cli/options.h"
#include "phnctl/cli/report.h"
#include "phnctl/handset/handset.h"
#include "phnctl/plan/entry_form.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace phnctl {

class EntryKind : public EntryForm
{
public:
    EntryKind(std::string one, std::string many, std::vector<std::string> extensions)
        : EntryForm(std::move(one), std::move(many)), m_extensions(std::move(extensions))
    {
    }

    // Of its files: ".ics", and all that are read, ".vcs".
    const std::string& Extension() const { return m_extensions.front(); }
    const std::vector<std::string>& Extensions() const { return m_extensions; }

    // The handset's entries. All throw Refusal; Read gives nothing where nothing is stored.
    virtual std::optional<Entry> Read(const Handset& handset, std::uint32_t index) const = 0;
    virtual void Write(const Handset& handset, std::uint32_t index, const Entry& entry) const = 0;
    virtual void Delete(const Handset& handset, std::uint32_t index) const = 0;
    virtual void DeleteAll(const Handset& handset) const = 0;
    // How many of them the handset says that it has; nothing where that cannot be known.
    virtual std::optional<std::uint32_t> Counted(const Handset&, const Options&) const { return std::nullopt; }

    // What the handset would hold if an entry that was read were written back; entries are compared in this form.
    virtual Entry Storable(const Entry& read) const = 0;
    // True where an import may leave on the handset what a file does not say.
    virtual bool CanMerge() const { return false; }
    // What tells an entry from all others; empty: nothing does, and two that are alike are no mistake.
    virtual std::string Id(const Entry&) const { return {}; }
    // What earlier imports left and the files no longer have is to be deleted, once it is known what of a plan the
    // handset can hold.
    virtual void DeleteStale(Plan&, const Inventory&) const {}

    // Files. Parse makes every entry of a file's text ready for the handset, or says why it cannot be; it throws
    // nothing, however broken the text is. What Format writes, Parse reads back without a loss.
    virtual std::vector<Candidate> Parse(const std::string& file, const std::string& text) const = 0;
    virtual std::string Format(std::span<const StoredEntry> entries) const = 0;

    // True when the text looks as if the library had replaced characters that have no place in the code page.
    virtual bool LooksGarbled(const Entry&) const { return false; }

    // The texts by which a person finds it.
    virtual std::vector<std::string> Sought(const Entry& entry) const = 0;
    // The properties that are the columns of a spreadsheet; none: the kind is not exported as one.
    virtual std::vector<std::string> SheetProperties() const { return {}; }

    // For people: fields that say more about properties than their values do; each has the property as its key.
    virtual std::vector<Field> Details(const Handset& handset, const Entry& entry) const = 0;

private:
    const std::vector<std::string> m_extensions; // the first is that of files that are written
};

} // namespace phnctl
