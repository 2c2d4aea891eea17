// A part of a backup: what one file of the backup's folder holds, taken off the handset and put back. Used by backup
// and restore, which know no more of contacts, events, messages and calls than this.
#pragma once

#include "phnctl/cli/command.h"
#include "phnctl/handset/handset.h"
#include "phnctl/plan/entry_form.h"
#include "phnctl/plan/losses.h"
#include "phnctl/plan/plan.h"
#include "phnctl/plan/retrace.h"
#include "phnctl/plan/run_record.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>

namespace phnctl {

struct SavedSection
{
    std::size_t count = 0;    // that the file holds
    std::size_t unread = 0;   // that could not be read
    Losses losses;            // that a restore would bring
    std::size_t textLost = 0; // how many may have lost characters to the code page
};

// What is to be put back of one part: planned, and nothing written yet.
struct Restoration
{
    const EntryForm* form;
    Plan plan;
    // Leaves in the plan what came of it; throws Failure.
    std::function<void(Plan& plan, bool isStrict, RunRecord& record)> apply;
    std::size_t others = 0; // that are not in the backup and stay
    std::string remark{};   // what a person has to know of what is put back
};

class BackupSection
{
public:
    virtual ~BackupSection() = default;

    virtual std::string One() const = 0;  // "contact"
    virtual std::string Name() const = 0; // "contacts"
    virtual std::string File() const = 0; // "contacts.vcf"

    // Writes the file whole, or throws Failure.
    virtual SavedSection Save(const Invocation& invocation, const Handset& handset,
                              const std::filesystem::path& file) const = 0;

    // Reads the file and the handset; nothing for what cannot be put back. Throws Failure. The arguments must live as
    // long as the result.
    virtual std::optional<Restoration> Prepare(const Invocation& invocation, const Handset& handset,
                                               const std::filesystem::path& file) const = 0;

    // The same for those steps of a run's journal that are this part's.
    virtual std::optional<Restoration> Retrace(const Invocation& invocation, const Handset& handset,
                                               std::span<const JournalStep> steps, Way way) const = 0;
};

// What is in the files of a backup; it is written last. A folder of copies has none.
inline constexpr const char* kBackupIndex = "backup.json";

// The option with which a restore deletes what the backup does not hold.
inline constexpr const char* kDeleteOthers = "--delete-others";

} // namespace phnctl
