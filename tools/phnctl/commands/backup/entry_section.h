// The part of a backup that a kind of entry is. A new kind needs no more than one of these in Sections.
#pragma once

#include "phnctl/commands/backup/section.h"
#include "phnctl/plan/entry_kind.h"

namespace phnctl {

class EntrySection : public BackupSection
{
public:
    explicit EntrySection(const EntryKind& kind) : m_kind(kind) {}

    std::string One() const override { return m_kind.One(); }
    std::string Name() const override { return m_kind.Many(); }
    std::string File() const override { return m_kind.Many() + m_kind.Extension(); }
    SavedSection Save(const Invocation& invocation, const Handset& handset,
                      const std::filesystem::path& file) const override;
    std::optional<Restoration> Prepare(const Invocation& invocation, const Handset& handset,
                                       const std::filesystem::path& file) const override;
    std::optional<Restoration> Retrace(const Invocation& invocation, const Handset& handset,
                                       std::span<const JournalStep> steps, Way way) const override;

private:
    const EntryKind& m_kind;
};

} // namespace phnctl
