// phnctl restore: a backup, or the copies that were kept before something was deleted, back on the handset. All parts
// are planned, and what has to be asked is asked, before anything is written.
#include "phnctl/cli/ending.h"
#include "phnctl/commands/backup/sections.h"
#include "phnctl/commands/entries/commands.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/handset/session.h"
#include "phnctl/plan/report.h"
#include "phnctl/plan/safeguard.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "phnctl/text/text_file.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace phnctl {

namespace fs = std::filesystem;

namespace {

struct Part
{
    std::unique_ptr<BackupSection> section;
    std::optional<Restoration> restoration;
    std::string problem; // why there is none
};

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

// A part that fails does not lose the others. True when none has.
bool Prepare(const Invocation& invocation, const Handset& handset, const fs::path& folder, std::vector<Part>& parts)
{
    bool isFine = true;
    for (Part& part : parts) {
        try {
            part.restoration = part.section->Prepare(invocation, handset, folder / part.section->File());
        } catch (const Failure& failure) {
            part.problem = failure.what();
            isFine = false;
            fmt::print(stderr, "phnctl: {}: {}\n", part.section->Name(), part.problem);
        }
    }
    return isFine;
}

std::size_t ToWrite(const Plan& plan)
{
    return plan.Count(Action::Add) + plan.Count(Action::Change);
}

std::size_t ToDelete(const Plan& plan)
{
    return plan.deletions.size();
}

// "3 contacts and 1 event"; empty where there is nothing of the kind.
std::string Amounts(const std::vector<Part>& parts, std::size_t (*amount)(const Plan&))
{
    std::vector<std::string> amounts;
    for (const Part& part : parts)
        if (const std::size_t count = part.restoration ? amount(part.restoration->plan) : 0)
            amounts.push_back(Counted(count, part.restoration->form->One(), part.restoration->form->Many()));
    return fmt::format("{}", fmt::join(amounts, " and "));
}

void AskForDeletions(const Invocation& invocation, const std::vector<Part>& parts)
{
    const std::string gone = Amounts(parts, ToDelete);
    if (gone.empty())
        return;
    for (const Part& part : parts)
        if (part.restoration)
            for (const Deletion& deletion : part.restoration->plan.deletions)
                fmt::print(stderr, "not in the backup: {} {}\n", part.restoration->form->One(),
                           Printable(part.restoration->form->Title(deletion.stored.entry)));
    const std::string written = Amounts(parts, ToWrite);
    Confirm(invocation, written.empty()
                            ? fmt::format("Delete {} from the handset?", gone)
                            : fmt::format("Write {} to the handset, and then delete {} from it?", written, gone));
}

void Show(const BackupSection& section, const std::optional<Restoration>& restoration)
{
    fmt::print("{}\n", section.File());
    if (!restoration) {
        fmt::print("No {} can be put back; they stay in the backup.\n", section.Name());
        return;
    }
    const auto& [form, plan, apply, others, remark] = *restoration;
    fmt::print("{}{}{}", PlanText(*form, plan), remark, remark.empty() ? "" : "\n");
    if (others != 0)
        fmt::print("{} of the handset {} not in the backup and {}; {} deletes {}.\n",
                   Counted(others, form->One(), form->Many()), others == 1 ? "is" : "are",
                   others == 1 ? "stays" : "stay", kDeleteOthers, others == 1 ? "it" : "them");
}

Json ToJson(const Part& part)
{
    const std::size_t others = part.restoration ? part.restoration->others : 0;
    JsonObject object{{"name", {part.section->Name()}},
                      {"file", {part.section->File()}},
                      {"problem", {part.problem}},
                      {"others", {static_cast<std::int64_t>(others)}}};
    if (part.restoration)
        object.emplace_back("plan", PlanJson(*part.restoration->form, part.restoration->plan));
    return {std::move(object)};
}

int CarryOut(const Invocation& invocation, Part& part)
{
    Restoration& restoration = *part.restoration;
    try {
        return CarryOut(invocation, restoration.plan,
                        [&](bool isStrict) { restoration.apply(restoration.plan, isStrict); });
    } catch (const Failure& failure) {
        part.problem = failure.what();
        fmt::print(stderr, "phnctl: {}: {}\n", part.section->Name(), part.problem);
        return kRefused;
    }
}

int Restore(const Invocation& invocation)
{
    const fs::path folder = PathOf(*invocation.Value("DIR"));
    std::vector<Part> parts = PartsOf(folder);
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        status = Prepare(invocation, handset, folder, parts) ? kDone : kRefused;
        if (!invocation.Has(kDryRun))
            AskForDeletions(invocation, parts);
        JsonList results;
        for (Part& part : parts) {
            const bool isReached = status != kInterrupted;
            if (part.restoration && isReached)
                status = std::max(status, CarryOut(invocation, part)); // an interrupt is the largest
            if (invocation.options.json)
                results.push_back(ToJson(part));
            else if (part.problem.empty() && isReached)
                Show(*part.section, part.restoration);
        }
        if (invocation.options.json)
            fmt::print("{}\n", WriteJson({JsonObject{{"sections", {std::move(results)}}}}));
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
         "name, and asked before anything is written. The folders in phnctl-copies can be restored, too.\n\n"
         "Examples:\n"
         "  phnctl restore my-handset --dry-run\n"
         "  phnctl restore my-handset\n",
         {{"DIR", "The folder of the backup", Count::One, {}}},
         Restore,
         options}};
}

} // namespace phnctl
