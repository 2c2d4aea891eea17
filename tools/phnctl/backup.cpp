// phnctl backup, phnctl restore: the whole handset in a folder of files that other programs read, and back.
#include "phnctl/backup_section.h"
#include "phnctl/command.h"
#include "phnctl/contact_kind.h"
#include "phnctl/ending.h"
#include "phnctl/entry_commands.h"
#include "phnctl/event_kind.h"
#include "phnctl/failure.h"
#include "phnctl/history_sections.h"
#include "phnctl/json.h"
#include "phnctl/safeguard.h"
#include "phnctl/session.h"
#include "phnctl/text.h"
#include "phnctl/text_file.h"

#include <fmt/format.h>
#include <memory>

namespace phnctl {

namespace fs = std::filesystem;

namespace {

constexpr const char* kForce = "--force";

std::vector<std::unique_ptr<BackupSection>> Sections()
{
    std::vector<std::unique_ptr<BackupSection>> sections;
    sections.push_back(std::make_unique<EntrySection>(ContactKind()));
    sections.push_back(std::make_unique<EntrySection>(EventKind()));
    sections.push_back(std::make_unique<MessageSection>());
    sections.push_back(std::make_unique<CallSection>());
    return sections;
}

void MakeFolder(const Invocation& invocation, const fs::path& folder)
{
    std::error_code error;
    fs::create_directories(folder, error);
    const bool isEmpty = !error && fs::is_empty(folder, error);
    if (error)
        throw Failure(kUsage, fmt::format("{}: {}", Printable(TextOf(folder)), error.message()));
    if (!isEmpty && !invocation.Has(kForce))
        throw Failure(kUsage, fmt::format("the folder {} is not empty; {} replaces the backup in it",
                                          Printable(TextOf(folder)), kForce));
}

// What became of one section, for people at once and for programs at the end.
Json SaveSection(const Invocation& invocation, const Handset& handset, const BackupSection& section,
                 const fs::path& folder, int& status)
{
    SavedSection saved;
    std::string problem;
    try {
        saved = section.Save(handset, folder / section.File());
    } catch (const Failure& failure) {
        problem = failure.what();
    }
    if (!problem.empty() || saved.unread != 0)
        status = kRefused;
    if (!problem.empty())
        fmt::print(stderr, "phnctl: {}: {}\n", section.Name(), problem);
    else if (!invocation.options.json)
        fmt::print("{:<10}{} in {}\n", section.Name(), saved.count, section.File());
    return {JsonObject{{"name", {section.Name()}},
                       {"file", {section.File()}},
                       {"count", {static_cast<std::int64_t>(saved.count)}},
                       {"unread", {static_cast<std::int64_t>(saved.unread)}},
                       {"problem", {problem}}}};
}

int Backup(const Invocation& invocation)
{
    const fs::path folder = PathOf(*invocation.Value("DIR"));
    MakeFolder(invocation, folder);
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        JsonList results;
        for (const auto& section : Sections())
            results.push_back(SaveSection(invocation, handset, *section, folder, status));
        if (invocation.options.json)
            fmt::print("{}\n", WriteJson({JsonObject{{"sections", {std::move(results)}}}}));
        else if (status == kDone)
            fmt::print("The backup is whole.\n");
        else
            fmt::print("The backup is NOT whole.\n");
    });
    return status;
}

int RestoreSection(const Invocation& invocation, const Handset& handset, const BackupSection& section,
                   const fs::path& file)
{
    if (!invocation.options.json)
        fmt::print("{}\n", section.File());
    try {
        return section.Restore(invocation, handset, file);
    } catch (const Failure& failure) {
        fmt::print(stderr, "phnctl: {}: {}\n", section.Name(), failure.what());
        return kRefused;
    }
}

int Restore(const Invocation& invocation)
{
    const fs::path folder = PathOf(*invocation.Value("DIR"));
    std::vector<std::unique_ptr<BackupSection>> there;
    std::error_code error;
    for (auto& section : Sections())
        if (fs::exists(folder / section->File(), error))
            there.push_back(std::move(section));
    if (there.empty())
        throw Failure(kUsage, fmt::format("the folder {} holds no backup", Printable(TextOf(folder))));
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        for (const auto& section : there) {
            const int result = RestoreSection(invocation, handset, *section, folder / section->File());
            status = result == kDone ? status : result;
            if (result == kInterrupted)
                return;
        }
    });
    return status;
}

} // namespace

std::vector<Command> BackupCommands()
{
    std::vector<CommandOption> restoreOptions = WriteOptions();
    restoreOptions.push_back({kDeleteOthers, "", "Delete what the handset holds and the backup does not"});
    restoreOptions.push_back(ConfirmOption());
    return {
        {"backup",
         "Write everything that the handset holds into a folder",
         "One file for each part, in forms that other programs read. A part that fails does not lose the others.\n\n"
         "Example:\n"
         "  phnctl backup my-handset\n",
         {{"DIR", "The folder; it is made if it is not there", Count::One, {}}},
         Backup,
         {{kForce, "", "Replace the backup that the folder holds"}}},
        {"restore",
         "Put a backup back on the handset",
         "Makes a plan for each part, as 'contacts import' does, and writes only what is not there already: after an\n"
         "interrupt, a second restore goes on from there. Nothing is deleted unless asked for.\n\n"
         "Examples:\n"
         "  phnctl restore my-handset --dry-run\n"
         "  phnctl restore my-handset\n",
         {{"DIR", "The folder of the backup", Count::One, {}}},
         Restore,
         restoreOptions}};
}

} // namespace phnctl
