// What is kept of a run that writes to the handset: the copies of what goes, and the journal with which the run can be
// taken back. Every command that writes entries has one. Nothing is made before there is something to keep.
#pragma once

#include "phnctl/cli/command.h"
#include "phnctl/handset/handset.h"
#include "phnctl/plan/entry_kind.h"
#include "phnctl/plan/journal.h"
#include "phnctl/plan/plan.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace phnctl {

std::vector<CommandOption> CopyOptions();   // --copy FILE and --no-copy
std::vector<CommandOption> CopiesOptions(); // --copies FOLDER and --no-copy, where there may be several

inline constexpr const char* kNoCopy = "--no-copy"; // neither copy nor journal

// What a copy holds: "contact", "contacts", ".vcf", how many of them, and the file's text.
struct Copy
{
    std::string one;
    std::string many;
    std::string extension;
    std::size_t count;
    std::string text;
};

class RunRecord
{
public:
    // `run` has the command's words, and what other run it has to do with.
    RunRecord(const Invocation& invocation, const Handset& handset, JournalRun run);
    RunRecord(const Invocation& invocation, const Handset& handset, const std::string& command)
        : RunRecord(invocation, handset, JournalRun{.name = {}, .command = command})
    {
    }

    // Whose journal it is. Throws Refusal.
    static JournalHandset IdentityOf(const Handset& handset);

    // Writes the copy into the folder of the run, or where the options say, and tells so on standard error; a file that
    // exists is left alone and the name gets a number. `phnctl restore` takes such a folder. Nothing when there is
    // nothing to copy. Throws Failure, as does all below: then the caller must leave everything as it is.
    void KeepCopy(const Copy& copy);
    void KeepCopy(const EntryKind& kind, std::span<const StoredEntry> entries);

    // The steps of the journal. Those of a plan are noted in it; `stored` is what the handset holds, in the form in
    // which entries are compared.
    std::size_t Expect(const std::vector<JournalStep>& steps);
    void Expect(const std::string& kind, Plan& plan, const std::vector<StoredEntry>& stored);
    void BeginAt(std::size_t step, std::uint32_t index);
    void Begin(std::size_t first, std::size_t count = 1);
    void Done(std::size_t first, std::size_t count = 1);
    void DoneAt(std::size_t step, std::uint32_t index, const Entry& holds);
    // Something was expected.
    bool HasSteps() const { return m_journal.has_value(); }
    // All that the run wanted to do has been tried.
    void Over();

private:
    const std::filesystem::path& Folder();
    std::filesystem::path FileFor(const Copy& copy);

    const Invocation& m_invocation;
    const bool m_isKept;
    JournalRun m_run;
    std::filesystem::path m_folder;
    std::optional<Journal> m_journal;
};

} // namespace phnctl
