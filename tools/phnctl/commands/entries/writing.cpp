// put and import of every kind of entry.
#include "phnctl/cli/ending.h"
#include "phnctl/commands/entries/commands.h"
#include "phnctl/commands/entries/parts.h"
#include "phnctl/handset/session.h"
#include "phnctl/plan/apply.h"
#include "phnctl/plan/inventory.h"
#include "phnctl/plan/report.h"
#include "phnctl/plan/safeguard.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "phnctl/text/text_file.h"
#include "system/system.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace phnctl {

namespace {

constexpr const char* kStrict = "--strict";
constexpr const char* kReplace = "--replace";

// The first index that holds nothing: everything up to it is asked.
std::uint32_t FirstEmpty(const Handset& handset, const EntryKind& kind)
{
    try {
        for (std::uint32_t index = IndexRange().first; index <= IndexRange().last; ++index)
            if (!kind.Read(handset, index))
                return index;
    } catch (const Refusal& refusal) {
        if (refusal.Code() != PHN_ERROR_INVALID_PARAMETER)
            throw;
    }
    throw Refusal(PHN_ERROR_RESULT_4, "no index is left that holds nothing");
}

// A file as a whole is nothing to make a plan of.
void RequireEntries(const EntryKind& kind, const std::vector<std::string>& files,
                    const std::vector<Candidate>& candidates)
{
    const auto isOfNoLine = [](const Candidate& candidate) { return !candidate.fits && candidate.line == 0; };
    if (!std::ranges::all_of(candidates, isOfNoLine))
        return;
    const std::string why = candidates.empty() ? "" : ": " + candidates.front().notes.back().text;
    throw Failure(kUsage, fmt::format("{} {} no {}{}", Printable(fmt::format("{}", fmt::join(files, ", "))),
                                      files.size() == 1 ? "holds" : "hold", kind.One(), why));
}

// Under another index, where an import would change it.
void TellIfHeldElsewhere(const Handset& handset, const EntryKind& kind, PlannedEntry& planned)
{
    const std::string id = kind.Id(planned.target);
    if (id.empty())
        return;
    for (const StoredEntry& stored : StorableOf(kind, TakeInventory(handset, kind, IndexRange())))
        if (stored.index != planned.index && kind.Id(stored.entry) == id)
            planned.Tell("held-elsewhere",
                         fmt::format("the handset has this {0} at index {1} already, and then has it twice; '{2} "
                                     "import' changes the one that is there",
                                     kind.One(), stored.index, kind.Many()));
}

int Put(const Invocation& invocation, const EntryKind& kind)
{
    const std::vector<std::string> file{*invocation.Value("FILE")};
    auto candidates = ReadCandidates(kind, file, invocation.Has(kAcceptLoss));
    RequireEntries(kind, file, candidates);
    std::erase_if(candidates, [](const Candidate& candidate) { return !candidate.isMeant; });
    if (candidates.size() != 1)
        throw Failure(kUsage, fmt::format("the file holds {} {}; 'put' takes one, 'import' takes all of them",
                                          candidates.size(), kind.Many()));
    const auto given = invocation.Value("INDEX");
    std::optional<std::uint32_t> index;
    if (given)
        index = ParseIndex(*given);
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        status = Store(invocation, handset, kind, std::move(candidates.front()), index, "put");
    });
    return status;
}

int Import(const Invocation& invocation, const EntryKind& kind)
{
    const std::vector<std::string> files = FilesOf(invocation.values.at("FILE"), kind.Extensions());
    auto candidates = ReadCandidates(kind, files, invocation.Has(kAcceptLoss));
    RequireEntries(kind, files, candidates);
    const IndexRange range = RangeOf(invocation);
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        const Inventory inventory = TakeInventory(handset, kind, range);
        TellUnread(kind, inventory);
        Plan plan =
            kind.Meet(std::move(candidates), inventory, invocation.Has(kReplace) ? Filling::Replace : Filling::Merge);
        LimitToRoom(plan, inventory.empty.size());
        if (!invocation.Has(kAcceptLoss))
            SpareGarbled(kind, plan, inventory);
        kind.DeleteStale(plan, inventory);
        std::vector<StoredEntry> stale;
        for (const Deletion& deletion : plan.deletions)
            stale.push_back(deletion.stored);
        RequireWholeCopy(invocation, kind, stale);
        status = CarryOut(invocation, handset, kind, plan, inventory, "import");
    });
    return status;
}

std::vector<CommandOption> ImportOptions(const EntryKind& kind)
{
    std::vector<CommandOption> options{RangeOption(), AcceptLossOption()};
    if (kind.CanMerge())
        options.push_back({kReplace, "", "Take what a file does not say off the " + kind.One() + " that it changes"});
    return options;
}

} // namespace

std::vector<Candidate> ReadCandidates(const EntryKind& kind, const std::vector<std::string>& files, bool acceptsLoss)
{
    std::vector<Candidate> candidates;
    for (const std::string& file : files) {
        const std::size_t before = candidates.size();
        for (Candidate& candidate : kind.Parse(file, ReadText(file)))
            candidates.push_back(std::move(candidate));
        if (candidates.size() == before && files.size() > 1)
            fmt::print(stderr, "{} holds no {}.\n", Printable(file), kind.One());
    }
    for (Candidate& candidate : candidates) {
        if (!candidate.hasLostText || acceptsLoss)
            continue;
        candidate.fits = false;
        candidate.notes.push_back(
            {"text-lost", "", candidate.line,
             fmt::format("the file says that its '?' may stand for characters that were lost when it was made; {} "
                         "writes it as it is",
                         kAcceptLoss)});
    }
    return candidates;
}

std::vector<CommandOption> WriteOptions()
{
    return {{kDryRun, "", "Show the plan and write nothing"},
            {kStrict, "", "Write nothing unless all can be held, and stop at the first that fails"}};
}

int CarryOut(const Invocation& invocation, Plan& plan, const std::function<void(bool isStrict)>& apply)
{
    const bool isHeld = plan.Count(Action::CannotHold) == 0 && plan.Count(Action::NoRoom) == 0;
    const bool isRefused = invocation.Has(kStrict) && !isHeld;
    if (!invocation.Has(kDryRun) && !isRefused)
        apply(invocation.Has(kStrict));
    if (plan.isInterrupted)
        return kInterrupted;
    if (isRefused)
        fmt::print(stderr, "phnctl: nothing was written, as --strict asks for all or nothing.\n");
    const bool isFine = plan.isApplied ? plan.IsWhole() : isHeld;
    return isFine && !isRefused ? kDone : kRefused;
}

int CarryOut(const Invocation& invocation, const Handset& handset, const EntryKind& kind, Plan& plan,
             const Inventory& inventory, const char* verb)
{
    TellDoubtfulTexts(kind, plan, inventory);
    const int status = CarryOut(invocation, plan, [&](bool isStrict) {
        RunRecord record(invocation, handset, fmt::format("{} {}", kind.Many(), verb));
        record.KeepCopy(kind, EndangeredBy(plan, inventory));
        Apply(handset, kind, plan, inventory, isStrict, record);
        if (!plan.isInterrupted)
            record.Over();
    });
    if (invocation.options.json)
        fmt::print("{}\n", WriteJson(PlanJson(kind, plan)));
    else
        fmt::print("{}", PlanText(kind, plan, host::TerminalWidth(stdout)));
    return status;
}

int Store(const Invocation& invocation, const Handset& handset, const EntryKind& kind, Candidate candidate,
          std::optional<std::uint32_t> index, const char* verb)
{
    Inventory inventory;
    if (!index)
        index = FirstEmpty(handset, kind);
    else if (auto present = kind.Read(handset, *index))
        inventory.entries.push_back({*index, std::move(*present)});
    Plan plan = MakePlanFor(kind, std::move(candidate), *index,
                            inventory.entries.empty() ? nullptr : &inventory.entries.front().entry);
    TellIfHeldElsewhere(handset, kind, plan.entries.front());
    if (!invocation.Has(kAcceptLoss))
        SpareGarbled(kind, plan, inventory);
    return CarryOut(invocation, handset, kind, plan, inventory, verb);
}

std::vector<Command> WritingCommands(const EntryKind& kind)
{
    const std::string& many = kind.Many();
    const auto help = [&](const char* text) { return HelpText(kind, text); };
    return {
        {many + " put",
         help("Store the {one} of a file"),
         help("Without INDEX it is added at the first index that holds nothing; otherwise it replaces what is stored "
              "there.\n\nExamples:\n  phnctl {many} put one{ext}\n  phnctl {many} put one{ext} 4 --dry-run\n"),
         {{"FILE", help("A {exts} file with one {one}; - for standard input"), Count::One, {}},
          {"INDEX", "Where to store it", Count::Optional, {}}},
         Bind(Put, kind),
         Joined(Joined(WriteOptions(), CopyOptions()), {AcceptLossOption()})},
        {many + " import",
         help("Store the {many} of files"),
         help("Makes a plan first: what is to be added, what changes, what is there already, and what the handset\n"
              "cannot hold. --dry-run shows it and ends. Each write is read back and compared; what is replaced is\n"
              "kept in a copy. Ctrl-C ends after the {one} in hand; a second import goes on from there.\n\n"
              "Examples:\n  phnctl {many} import all{ext} --dry-run\n  phnctl {many} import folder more{ext}\n"),
         {{"FILE", help("{exts} files, folders of them, or - for standard input"), Count::Many, {}}},
         Bind(Import, kind),
         Joined(Joined(ImportOptions(kind), WriteOptions()), CopyOptions())},
    };
}

} // namespace phnctl
