// phnctl restore: a backup, or the copies that were kept before something was deleted, back on the handset. All parts
// are planned, and what has to be asked is asked, before anything is written.
#include "phnctl/cli/ending.h"
#include "phnctl/commands/backup/restoration.h"
#include "phnctl/commands/backup/sections.h"
#include "phnctl/commands/entries/commands.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/handset/session.h"
#include "phnctl/plan/report.h"
#include "phnctl/plan/safeguard.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/json.h"
#include "phnctl/text/text.h"
#include "phnctl/text/text_file.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace phnctl {

namespace fs = std::filesystem;

namespace {

std::vector<Part> PartsOf(const fs::path& folder)
{
    std::vector<Part> parts;
    std::error_code error;
    for (auto& section : Sections())
        if (fs::exists(folder / section->File(), error))
            parts.push_back({std::move(section), std::nullopt, ""});
    if (parts.empty())
        throw Failure(kUsage, fmt::format("the folder {} holds no backup", Printable(TextOf(folder))));
    return parts;
}

// Whether the backup says that it holds all of a part: what could not be read when it was made is not to be deleted.
bool HoldsAll(const Json& index, const std::string& name)
{
    const Json* sections = index.Find("sections");
    const auto* list = sections ? std::get_if<JsonList>(&sections->value) : nullptr;
    const auto isWhole = [&](const Json& section) {
        const Json* own = section.Find("name");
        const Json* problem = section.Find("problem");
        const Json* unread = section.Find("unread");
        return own && own->Text() && *own->Text() == name && problem && problem->Text() && problem->Text()->empty() &&
               unread && std::get_if<std::int64_t>(&unread->value) && std::get<std::int64_t>(unread->value) == 0;
    };
    return list && std::ranges::any_of(*list, isWhole);
}

void RequireWholeBackup(const fs::path& folder, const std::vector<Part>& parts)
{
    Json index;
    try {
        index = ParseJson(ReadText(TextOf(folder / kBackupIndex)));
    } catch (const std::exception&) {
        // Then it claims nothing.
    }
    for (const Part& part : parts)
        if (!HoldsAll(index, part.section->Name()))
            throw Failure(kUsage,
                          fmt::format("{} does not say that it holds all {} that there were, so that {} could delete "
                                      "what it does not know. Nothing was changed.",
                                      Printable(TextOf(folder)), part.section->Name(), kDeleteOthers));
}

void AskForDeletions(const Invocation& invocation, const std::vector<Part>& parts)
{
    const std::string gone = AmountToDelete(parts);
    if (gone.empty())
        return;
    for (const Part& part : parts)
        if (part.restoration)
            for (const Deletion& deletion : part.restoration->plan.deletions)
                fmt::print(stderr, "not in the backup: {} {}\n", part.restoration->form->One(),
                           Printable(part.restoration->form->Title(deletion.stored.entry)));
    const std::string written = AmountToWrite(parts);
    Confirm(invocation, written.empty()
                            ? fmt::format("Delete {} from the handset?", gone)
                            : fmt::format("Write {} to the handset, and then delete {} from it?", written, gone));
}

int Restore(const Invocation& invocation)
{
    const fs::path folder = PathOf(*invocation.Value("DIR"));
    std::vector<Part> parts = PartsOf(folder);
    if (invocation.Has(kDeleteOthers))
        RequireWholeBackup(folder, parts);
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        const bool isReady = Prepare(parts, [&](const BackupSection& section) {
            return section.Prepare(invocation, handset, folder / section.File());
        });
        if (!invocation.Has(kDryRun))
            AskForDeletions(invocation, parts);
        RunRecord record(invocation, handset, "restore");
        status = std::max(isReady ? kDone : kRefused, PutBack(invocation, parts, record));
    });
    return status;
}

} // namespace

std::vector<Command> RestoreCommands()
{
    std::vector<CommandOption> options = WriteOptions();
    for (CommandOption& option : CopiesOptions())
        options.push_back(std::move(option));
    options.push_back(
        {kDeleteOthers, "", "Delete the contacts and events that the backup does not hold (messages and calls stay)"});
    options.push_back(AcceptLossOption());
    options.push_back(ConfirmOption());
    return {
        {"restore",
         "Put a backup back on the handset",
         "Makes a plan for each part, as 'contacts import' does, and writes only what is not there already: after an\n"
         "interrupt, a second restore goes on from there. Nothing is deleted unless asked for; then it is shown by\n"
         "name, and asked before anything is written. The folders of 'phnctl undo --list' hold the\n"
         "copies of what a run took away, and can be restored, too.\n\n"
         "Examples:\n"
         "  phnctl restore my-handset --dry-run\n"
         "  phnctl restore my-handset\n",
         {{"DIR", "The folder of the backup", Count::One, {}}},
         Restore,
         options}};
}

} // namespace phnctl
