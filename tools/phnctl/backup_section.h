// A part of a backup: what one file of the backup's folder holds, taken off the handset and put back. Used by backup
// and restore, which know no more of contacts, events, messages and calls than this. A new part is one line in
// backup.cpp; kinds of entries need no more than an EntrySection.
#pragma once

#include "phnctl/command.h"
#include "phnctl/entry_kind.h"

#include <filesystem>
#include <string>

namespace phnctl {

struct SavedSection
{
    std::size_t count = 0;  // that the file holds
    std::size_t unread = 0; // that could not be read
};

class BackupSection
{
public:
    virtual ~BackupSection() = default;

    virtual std::string Name() const = 0; // "contacts"
    virtual std::string File() const = 0; // "contacts.vcf"

    // Writes the file whole, or throws Failure.
    virtual SavedSection Save(const Handset& handset, const std::filesystem::path& file) const = 0;

    // Plans, shows and carries out as the invocation says; the exit status. Throws Failure.
    virtual int Restore(const Invocation& invocation, const Handset& handset,
                        const std::filesystem::path& file) const = 0;
};

class EntrySection : public BackupSection
{
public:
    explicit EntrySection(const EntryKind& kind) : m_kind(kind) {}

    std::string Name() const override { return m_kind.Many(); }
    std::string File() const override { return m_kind.Many() + m_kind.Extension(); }
    SavedSection Save(const Handset& handset, const std::filesystem::path& file) const override;
    int Restore(const Invocation& invocation, const Handset& handset, const std::filesystem::path& file) const override;

private:
    const EntryKind& m_kind;
};

// The option with which a restore deletes what the backup does not hold.
inline constexpr const char* kDeleteOthers = "--delete-others";

} // namespace phnctl
