// get and export of every kind of entry.
#include "phnctl/cli/print.h"
#include "phnctl/commands/entries/commands.h"
#include "phnctl/commands/entries/parts.h"
#include "phnctl/commands/exporting.h"
#include "phnctl/handset/session.h"
#include "phnctl/plan/inventory.h"
#include "phnctl/text/csv.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "phnctl/text/text_file.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace fs = std::filesystem;

namespace {

constexpr const char* kFolder = "--folder";
constexpr const char* kText = "--text";

int Get(const Invocation& invocation, const EntryKind& kind)
{
    const std::uint32_t index = ParseIndex(*invocation.Value("INDEX"));
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const StoredEntry stored{index, ReadOne(handset, kind, index)};
        if (invocation.Has(kText))
            return PrintFileText(kind.Format({&stored, 1}));
        const std::vector<Field> details = kind.Details(handset, stored.entry);
        if (!invocation.options.json)
            return Print(invocation.options, Describe(kind, stored.entry, details, {{"index", "Index", stored.index}}));
        JsonObject object = EntryJson(kind, stored);
        object.emplace_back("details", ToJson({{{"", "", details}}}));
        fmt::print("{}\n", WriteJson({std::move(object)}));
    });
}

// "0012 Anna Berg.vcf": names that every file system takes.
std::string FileNameOf(const EntryKind& kind, const StoredEntry& stored)
{
    std::string name = fmt::format("{:04} {}", stored.index, Printable(kind.Title(stored.entry)));
    for (char& c : name)
        if (std::string_view("<>:\"/\\|?*").find(c) != std::string_view::npos)
            c = '_';
    const std::size_t end = name.find_last_not_of(" .");
    return name.substr(0, end + 1) + kind.Extension();
}

void WriteFolder(const fs::path& folder, const EntryKind& kind, const Inventory& inventory, Existing existing)
{
    std::error_code error;
    MakeFolder(folder);
    if (existing == Existing::Refuse && !fs::is_empty(folder, error))
        throw Failure(kUsage,
                      fmt::format("the folder {} is not empty; --force writes into it", Printable(TextOf(folder))));
    for (const StoredEntry& stored : inventory.entries)
        WriteText(folder / PathOf(FileNameOf(kind, stored)), kind.Format({&stored, 1}), existing);
}

std::string Sheet(const EntryKind& kind, const std::vector<StoredEntry>& entries)
{
    const std::vector<std::string> properties = kind.SheetProperties();
    std::vector<std::string> headings;
    for (const std::string& property : properties)
        headings.push_back(kind.Label(property));
    std::vector<std::vector<std::string>> rows;
    for (const StoredEntry& stored : entries) {
        auto& row = rows.emplace_back();
        for (const std::string& property : properties) {
            const std::string* const value = stored.entry.Find(property);
            row.push_back(value ? *value : "");
        }
    }
    return CsvText(headings, rows);
}

std::string FormatOf(const EntryKind& kind)
{
    return kind.Extension().substr(1);
}

int Export(const Invocation& invocation, const EntryKind& kind)
{
    const bool isSheet = !kind.SheetProperties().empty() && WantsCsv(invocation, FormatOf(kind));
    if (isSheet && invocation.Has(kFolder))
        throw Failure(kUsage, fmt::format("csv is one table in one file: {} is not for it", kFolder));
    const std::string destination = *invocation.Value("FILE");
    const IndexRange range = RangeOf(invocation);
    const Existing existing = invocation.Has(kForce) ? Existing::Replace : Existing::Refuse;
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        const Inventory inventory = TakeInventory(handset, kind, range);
        TellUnread(kind, inventory);
        const std::size_t garbled = TellGarbled(kind, inventory.entries);
        status = garbled == 0 ? StatusOf(inventory) : kRefused;
        std::error_code error;
        const bool isFolder = invocation.Has(kFolder) || fs::is_directory(PathOf(destination), error);
        if (isFolder && !isSheet)
            WriteFolder(PathOf(destination), kind, inventory, existing);
        else
            WriteExport(invocation, isSheet ? Sheet(kind, inventory.entries) : kind.Format(inventory.entries));
        if (destination == "-")
            return;
        const std::size_t count = inventory.entries.size();
        PrintDone(
            invocation.options,
            fmt::format("{} {} written to {}.", count, count == 1 ? kind.One() : kind.Many(), Printable(destination)),
            {{{"",
               "",
               {{"exported", "", count}, {"unread", "", inventory.unread.size()}, {"textLost", "", garbled}}}}});
    });
    return status;
}

std::vector<CommandOption> OptionsOfExport(const EntryKind& kind)
{
    std::vector<CommandOption> options = ExportOptions(FormatOf(kind));
    if (kind.SheetProperties().empty())
        options.erase(options.begin());
    return Joined({RangeOption(), {kFolder, "", "FILE is a folder; make it if it is not there"}}, options);
}

} // namespace

std::vector<Command> ReadingCommands(const EntryKind& kind)
{
    const std::string& many = kind.Many();
    const auto help = [&](const char* text) { return HelpText(kind, text); };
    return {
        {many + " get",
         help("Show one {one}"),
         help("Example:\n  phnctl {many} get 4\n  phnctl {many} get 4 --text > one{ext}\n"),
         {{"INDEX", "The index that 'list' shows", Count::One, {}}},
         Bind(Get, kind),
         {{kText, "", help("As the text of a {ext} file")}}},
        {many + " export",
         help("Write the {many} to a file or a folder"),
         help("A folder that exists, or any with --folder, takes one file for each {one}.\n\n"
              "Examples:\n  phnctl {many} export all{ext}\n  phnctl {many} export {many} --folder\n") +
             (kind.SheetProperties().empty() ? "" : help("  phnctl {many} export {many}.csv --format csv\n")),
         {ExportArgument()},
         Bind(Export, kind),
         OptionsOfExport(kind)},
    };
}

} // namespace phnctl
