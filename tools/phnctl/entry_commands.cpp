#include "phnctl/entry_commands.h"

#include "phnctl/apply.h"
#include "phnctl/ending.h"
#include "phnctl/failure.h"
#include "phnctl/inventory.h"
#include "phnctl/number.h"
#include "phnctl/plan_report.h"
#include "phnctl/print.h"
#include "phnctl/safeguard.h"
#include "phnctl/session.h"
#include "phnctl/table.h"
#include "phnctl/text.h"
#include "phnctl/text_file.h"
#include "system/system.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace fs = std::filesystem;

namespace {

constexpr const char* kDryRun = "--dry-run";
constexpr const char* kStrict = "--strict";
constexpr const char* kForce = "--force";
constexpr const char* kFolder = "--folder";
constexpr const char* kText = "--text";

std::uint32_t ParseIndex(const std::string& text)
{
    const auto number = ParseNumber(text, 0xFFFFFFFF);
    if (!number)
        throw Failure(kUsage, fmt::format("'{}' is no index; allowed: a number such as 12", Printable(text)));
    return static_cast<std::uint32_t>(*number);
}

JsonObject EntryJson(const EntryKind& kind, const StoredEntry& stored)
{
    JsonList fields;
    for (const EntryField& field : stored.entry.fields)
        fields.push_back({JsonObject{{"property", {field.property}}, {"value", {field.value}}}});
    return {{"index", {std::int64_t{stored.index}}},
            {"title", {kind.Title(stored.entry)}},
            {"fields", {std::move(fields)}}};
}

// The exit status of a command that only reads.
int StatusOf(const Inventory& inventory)
{
    return inventory.unread.empty() ? kDone : kRefused;
}

int List(const Invocation& invocation, const EntryKind& kind)
{
    const IndexRange range = RangeOf(invocation);
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        const Inventory inventory = TakeInventory(handset, kind, range);
        TellUnread(kind, inventory);
        TellGarbled(kind, inventory);
        status = StatusOf(inventory);
        if (invocation.options.json) {
            JsonList list;
            for (const StoredEntry& stored : inventory.entries)
                list.push_back({EntryJson(kind, stored)});
            fmt::print("{}\n", WriteJson({JsonObject{{kind.Many(), {std::move(list)}}}}));
            return;
        }
        std::vector<std::string> headings{"Index"};
        for (std::string& column : kind.Columns())
            headings.push_back(std::move(column));
        std::vector<std::vector<std::string>> rows;
        for (const StoredEntry& stored : inventory.entries) {
            auto& row = rows.emplace_back(1, std::to_string(stored.index));
            for (std::string& cell : kind.Row(stored.entry))
                row.push_back(std::move(cell));
        }
        const std::size_t count = rows.size();
        fmt::print("{}{} {}\n", count ? TableText(headings, rows, host::TerminalWidth(stdout)) + '\n' : "", count,
                   count == 1 ? kind.One() : kind.Many());
    });
    return status;
}

Entry ReadOne(const Handset& handset, const EntryKind& kind, std::uint32_t index)
{
    auto entry = kind.Read(handset, index);
    if (!entry)
        throw Refusal(PHN_ERROR_NOT_FOUND, fmt::format("no {} is stored under index {}", kind.One(), index));
    return std::move(*entry);
}

// Everything about one entry, in the order of its fields.
Report Describe(const EntryKind& kind, const StoredEntry& stored, const std::vector<Field>& details)
{
    Section section{"", "", {{"index", "Index", stored.index}}};
    for (const EntryField& field : stored.entry.fields) {
        const auto detail = std::find_if(details.begin(), details.end(),
                                         [&](const Field& candidate) { return candidate.key == field.property; });
        section.fields.push_back(
            detail != details.end() ? *detail : Field(field.property, kind.Label(field.property), field.value));
    }
    return {{std::move(section)}};
}

int Get(const Invocation& invocation, const EntryKind& kind)
{
    const std::uint32_t index = ParseIndex(*invocation.Value("INDEX"));
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const StoredEntry stored{index, ReadOne(handset, kind, index)};
        if (invocation.Has(kText))
            return fmt::print("{}", kind.Format({&stored, 1}));
        const std::vector<Field> details = kind.Details(handset, stored.entry);
        if (!invocation.options.json)
            return Print(invocation.options, Describe(kind, stored, details));
        JsonObject object = EntryJson(kind, stored);
        object.emplace_back("details", ToJson({{{"", "", details}}}));
        fmt::print("{}\n", WriteJson({std::move(object)}));
    });
}

// The first index that holds nothing: everything up to it is asked.
std::uint32_t FirstEmpty(const Handset& handset, const EntryKind& kind)
{
    for (std::uint32_t index = IndexRange().first; index <= IndexRange().last; ++index)
        if (!kind.Read(handset, index))
            return index;
    throw Refusal(PHN_ERROR_RESULT_4, "no index is left that holds nothing");
}

int Put(const Invocation& invocation, const EntryKind& kind)
{
    auto candidates = ReadCandidates(kind, {*invocation.Value("FILE")});
    if (candidates.size() != 1)
        throw Failure(kUsage, fmt::format("the file holds {} {}; 'put' takes one, 'import' takes all of them",
                                          candidates.size(), kind.Many()));
    const auto given = invocation.Value("INDEX");
    std::optional<std::uint32_t> index;
    if (given)
        index = ParseIndex(*given);
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        Inventory inventory;
        if (!index)
            index = FirstEmpty(handset, kind);
        else if (auto present = kind.Read(handset, *index))
            inventory.entries.push_back({*index, std::move(*present)});
        Plan plan = MakePlanFor(kind, std::move(candidates.front()), *index,
                                inventory.entries.empty() ? nullptr : &inventory.entries.front().entry);
        status = CarryOut(invocation, handset, kind, plan, inventory);
    });
    return status;
}

int Import(const Invocation& invocation, const EntryKind& kind)
{
    auto candidates = ReadCandidates(kind, FilesOf(invocation.values.at("FILE"), kind.Extension()));
    const IndexRange range = RangeOf(invocation);
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        const Inventory inventory = TakeInventory(handset, kind, range);
        TellUnread(kind, inventory);
        Plan plan = MakePlan(kind, std::move(candidates), inventory);
        status = CarryOut(invocation, handset, kind, plan, inventory);
    });
    return status;
}

// "0012 Anna Berg.vcf": names that every file system takes.
std::string FileNameOf(const EntryKind& kind, const StoredEntry& stored)
{
    std::string name = fmt::format("{:04} {}", stored.index, kind.Title(stored.entry));
    for (char& c : name)
        if (static_cast<unsigned char>(c) < 0x20 ||
            std::string_view("<>:\"/\\|?*\x7F").find(c) != std::string_view::npos)
            c = '_';
    const std::size_t end = name.find_last_not_of(" .");
    return name.substr(0, end + 1) + kind.Extension();
}

void WriteFolder(const fs::path& folder, const EntryKind& kind, const Inventory& inventory, Existing existing)
{
    std::error_code error;
    fs::create_directories(folder, error);
    if (error)
        throw Failure(kRefused, fmt::format("{}: {}", Printable(TextOf(folder)), error.message()));
    if (existing == Existing::Refuse && !fs::is_empty(folder, error))
        throw Failure(kUsage,
                      fmt::format("the folder {} is not empty; --force writes into it", Printable(TextOf(folder))));
    for (const StoredEntry& stored : inventory.entries)
        WriteText(folder / PathOf(FileNameOf(kind, stored)), kind.Format({&stored, 1}), existing);
}

int Export(const Invocation& invocation, const EntryKind& kind)
{
    const std::string destination = *invocation.Value("FILE");
    const IndexRange range = RangeOf(invocation);
    const Existing existing = invocation.Has(kForce) ? Existing::Replace : Existing::Refuse;
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        const Inventory inventory = TakeInventory(handset, kind, range);
        TellUnread(kind, inventory);
        TellGarbled(kind, inventory);
        status = StatusOf(inventory);
        if (destination == "-") {
            fmt::print("{}", kind.Format(inventory.entries));
            return;
        }
        std::error_code error;
        if (invocation.Has(kFolder) || fs::is_directory(PathOf(destination), error))
            WriteFolder(PathOf(destination), kind, inventory, existing);
        else
            WriteText(PathOf(destination), kind.Format(inventory.entries), existing);
        const std::size_t count = inventory.entries.size();
        PrintDone(
            invocation.options,
            fmt::format("{} {} written to {}.", count, count == 1 ? kind.One() : kind.Many(), Printable(destination)),
            {{{"", "", {{"exported", "", count}, {"unread", "", inventory.unread.size()}}}}});
    });
    return status;
}

int Delete(const Invocation& invocation, const EntryKind& kind)
{
    std::vector<std::uint32_t> indexes;
    for (const std::string& text : invocation.values.at("INDEX"))
        indexes.push_back(ParseIndex(text));
    return WithHandset(invocation.options, [&](const Handset& handset) {
        std::vector<StoredEntry> entries;
        for (const std::uint32_t index : indexes)
            entries.push_back({index, ReadOne(handset, kind, index)});
        for (const StoredEntry& stored : entries)
            fmt::print(stderr, "{}  {}\n", stored.index, Printable(kind.Title(stored.entry)));
        const std::string what =
            entries.size() == 1 ? "this " + kind.One() : fmt::format("these {} {}", entries.size(), kind.Many());
        Confirm(invocation, fmt::format("Delete {}?", what));
        KeepCopy(invocation, kind, "delete", entries);
        for (const StoredEntry& stored : entries)
            kind.Delete(handset, stored.index);
        PrintDone(invocation.options, fmt::format("{} deleted.", entries.size()),
                  {{{"", "", {{"deleted", "", entries.size()}}}}});
    });
}

int Clear(const Invocation& invocation, const EntryKind& kind)
{
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const Inventory inventory = TakeInventory(handset, kind, IndexRange());
        TellUnread(kind, inventory);
        TellGarbled(kind, inventory);
        if (!inventory.unread.empty() && !invocation.Has("--no-copy"))
            throw Failure(kRefused, fmt::format("{} {} cannot be read, so that no whole copy can be kept; --no-copy "
                                                "deletes them all the same. Nothing was changed.",
                                                inventory.unread.size(), kind.Many()));
        Confirm(invocation, fmt::format("Delete all {} {} of the handset?", inventory.entries.size(), kind.Many()));
        KeepCopy(invocation, kind, "clear", inventory.entries);
        kind.DeleteAll(handset);
        PrintDone(invocation.options, fmt::format("All {} {} are deleted.", inventory.entries.size(), kind.Many()),
                  {{{"", "", {{"deleted", "", inventory.entries.size()}}}}});
    });
}

template <class Function>
std::function<int(const Invocation&)> Bind(Function* function, const EntryKind& kind)
{
    return [function, &kind](const Invocation& invocation) { return function(invocation, kind); };
}

std::vector<CommandOption> Joined(std::vector<CommandOption> options, const std::vector<CommandOption>& more)
{
    options.insert(options.end(), more.begin(), more.end());
    return options;
}

} // namespace

std::vector<Candidate> ReadCandidates(const EntryKind& kind, const std::vector<std::string>& files)
{
    std::vector<Candidate> candidates;
    for (const std::string& file : files)
        for (Candidate& candidate : kind.Parse(file, ReadText(file)))
            candidates.push_back(std::move(candidate));
    return candidates;
}

std::vector<CommandOption> WriteOptions()
{
    return Joined({{kDryRun, "", "Show the plan and write nothing"},
                   {kStrict, "", "Write nothing unless all can be held, and stop at the first that fails"}},
                  CopyOptions());
}

int CarryOut(const Invocation& invocation, const Handset& handset, const EntryKind& kind, Plan& plan,
             const Inventory& inventory)
{
    const bool isRefused = invocation.Has(kStrict) && plan.Count(Action::CannotHold) != 0;
    if (!invocation.Has(kDryRun) && !isRefused) {
        std::vector<StoredEntry> replaced;
        for (const PlannedEntry& planned : plan.entries)
            for (const StoredEntry& stored : inventory.entries)
                if (planned.action == Action::Change && planned.index == stored.index)
                    replaced.push_back(stored);
        KeepCopy(invocation, kind, "import", replaced);
        Apply(handset, kind, plan, inventory, invocation.Has(kStrict));
    }
    if (invocation.options.json)
        fmt::print("{}\n", WriteJson(PlanJson(kind, plan)));
    else
        fmt::print("{}", PlanText(kind, plan));
    if (plan.isInterrupted)
        return kInterrupted;
    if (isRefused)
        fmt::print(stderr, "phnctl: nothing was written, as --strict asks for all or nothing.\n");
    return !isRefused && (plan.IsWhole() || (!plan.isApplied && plan.Count(Action::CannotHold) == 0)) ? kDone
                                                                                                      : kRefused;
}

std::vector<Command> EntryCommands(const EntryKind& kind)
{
    const std::string& one = kind.One();
    const std::string& many = kind.Many();
    const auto help = [&](const char* text) {
        return fmt::format(fmt::runtime(text), fmt::arg("one", one), fmt::arg("many", many),
                           fmt::arg("ext", kind.Extension()));
    };
    const CommandOption force{kForce, "", "Replace files that exist"};
    return {
        {many, help("List, read, write, export and import {many}"), "", {}, nullptr},
        {many + " list",
         help("List the {many} of the handset"),
         help("Example:\n  phnctl {many} list\n  phnctl {many} list --range 0-49 --json\n"),
         {},
         Bind(List, kind),
         {RangeOption()}},
        {many + " get",
         help("Show one {one}"),
         help("Example:\n  phnctl {many} get 4\n  phnctl {many} get 4 --text > one{ext}\n"),
         {{"INDEX", help("The index that 'list' shows"), Count::One, {}}},
         Bind(Get, kind),
         {{kText, "", help("As the text of a {ext} file")}}},
        {many + " put",
         help("Store the {one} of a file"),
         help("Without INDEX it is added at the first index that holds nothing; otherwise it replaces what is stored "
              "there.\n\nExamples:\n  phnctl {many} put one{ext}\n  phnctl {many} put one{ext} 4 --dry-run\n"),
         {{"FILE", help("A {ext} file with one {one}; - for standard input"), Count::One, {}},
          {"INDEX", "Where to store it", Count::Optional, {}}},
         Bind(Put, kind),
         WriteOptions()},
        {many + " delete",
         help("Delete single {many}"),
         help("Asks first, and keeps a copy.\n\nExample:\n  phnctl {many} delete 4 7\n"),
         {{"INDEX", help("The indexes that 'list' shows"), Count::Many, {}}},
         Bind(Delete, kind),
         Joined({ConfirmOption()}, CopyOptions())},
        {many + " clear",
         help("Delete all {many}"),
         help("Asks first, and keeps a copy.\n\nExample:\n  phnctl {many} clear --copy all{ext}\n"),
         {},
         Bind(Clear, kind),
         Joined({ConfirmOption()}, CopyOptions())},
        {many + " export",
         help("Write the {many} to a file or a folder"),
         help("A folder that exists, or any with --folder, takes one file for each {one}.\n\n"
              "Examples:\n  phnctl {many} export all{ext}\n  phnctl {many} export {many} --folder\n"),
         {{"FILE", "Where to; - for standard output", Count::One, {}}},
         Bind(Export, kind),
         {RangeOption(), {kFolder, "", "FILE is a folder; make it if it is not there"}, force}},
        {many + " import",
         help("Store the {many} of files"),
         help("Makes a plan first: what is to be added, what changes, what is there already, and what the handset\n"
              "cannot hold. --dry-run shows it and ends. Each write is read back and compared; what is replaced is\n"
              "kept in a copy. Ctrl-C ends after the {one} in hand; a second import goes on from there.\n\n"
              "Examples:\n  phnctl {many} import all{ext} --dry-run\n  phnctl {many} import folder more{ext}\n"),
         {{"FILE", help("{ext} files, folders of them, or - for standard input"), Count::Many, {}}},
         Bind(Import, kind),
         Joined({RangeOption()}, WriteOptions())},
    };
}

} // namespace phnctl
