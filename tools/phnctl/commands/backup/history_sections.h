// The parts of a backup that are no entries under indexes: the messages and the calls, as JSON. Messages come back as
// newly saved ones, which is all that the library can store; calls do not come back at all.
#pragma once

#include "phnctl/commands/backup/section.h"

namespace phnctl {

class MessageSection : public BackupSection
{
public:
    std::string One() const override { return "message"; }
    std::string Name() const override { return "messages"; }
    std::string File() const override { return "messages.json"; }
    SavedSection Save(const Invocation& invocation, const Handset& handset,
                      const std::filesystem::path& file) const override;
    std::optional<Restoration> Prepare(const Invocation& invocation, const Handset& handset,
                                       const std::filesystem::path& file) const override;
    std::optional<Restoration> Retrace(const Invocation& invocation, const Handset& handset,
                                       std::span<const JournalStep> steps, Way way) const override;
};

class CallSection : public BackupSection
{
public:
    std::string One() const override { return "call"; }
    std::string Name() const override { return "calls"; }
    std::string File() const override { return "calls.json"; }
    SavedSection Save(const Invocation& invocation, const Handset& handset,
                      const std::filesystem::path& file) const override;
    std::optional<Restoration> Prepare(const Invocation& invocation, const Handset& handset,
                                       const std::filesystem::path& file) const override;
    std::optional<Restoration> Retrace(const Invocation& invocation, const Handset& handset,
                                       std::span<const JournalStep> steps, Way way) const override;
};

} // namespace phnctl
