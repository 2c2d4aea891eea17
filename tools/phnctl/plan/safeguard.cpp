#include "phnctl/plan/safeguard.h"

#include "phnctl/cli/print.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "phnctl/text/text_file.h"
#include "system/system.h"

#include <fmt/format.h>
#include <set>
#include <windows.h>

namespace phnctl {

namespace {

constexpr const char* kYes = "--yes";
constexpr const char* kCopy = "--copy";
constexpr const char* kCopies = "--copies";
constexpr const char* kNoCopy = "--no-copy";

// The path, or the first of its numbered relatives that is not there yet.
std::filesystem::path FreePath(const std::filesystem::path& path)
{
    std::error_code error;
    std::filesystem::path free = path;
    for (unsigned number = 2; std::filesystem::exists(free, error); ++number)
        free.replace_filename(path.stem().concat(fmt::format("-{}", number)).concat(path.extension().native()));
    return free;
}

// One for all copies of this run.
const std::filesystem::path& RunFolder(const std::string& before)
{
    static const std::filesystem::path folder = [&] {
        SYSTEMTIME now{};
        GetLocalTime(&now);
        return FreePath(std::filesystem::path("phnctl-copies") /
                        fmt::format("{:04}{:02}{:02}-{:02}{:02}{:02}-before-{}", now.wYear, now.wMonth, now.wDay,
                                    now.wHour, now.wMinute, now.wSecond, before));
    }();
    return folder;
}

std::filesystem::path FileFor(const Invocation& invocation, const std::string& before, const Copy& copy)
{
    if (const auto file = invocation.Value(kCopy))
        return FreePath(PathOf(*file));
    const auto given = invocation.Value(kCopies);
    const std::filesystem::path folder = given ? PathOf(*given) : RunFolder(before);
    std::error_code error;
    std::filesystem::create_directories(folder, error); // where it fails, writing the file says why
    return FreePath(folder / (copy.many + copy.extension));
}

} // namespace

CommandOption ConfirmOption()
{
    return {kYes, "", "Do not ask"};
}

CommandOption AcceptLossOption()
{
    return {kAcceptLoss, "", "Go on with texts that have lost characters to the code page"};
}

std::vector<CommandOption> CopyOptions()
{
    return {{kCopy, "FILE", "Where to keep a copy of what goes (default: in a new folder in phnctl-copies)"},
            {kNoCopy, "", "Keep no copy"}};
}

std::vector<CommandOption> CopiesOptions()
{
    return {{kCopies, "FOLDER", "Where to keep copies of what goes (default: a new folder in phnctl-copies)"},
            {kNoCopy, "", "Keep no copies"}};
}

void KeepCopy(const Invocation& invocation, const std::string& before, const Copy& copy)
{
    if (invocation.Has(kNoCopy) || copy.count == 0)
        return;
    const auto file = FileFor(invocation, before, copy);
    WriteText(file, copy.text, Existing::Refuse);
    fmt::print(stderr, "A copy of {} is in {}.\n", Counted(copy.count, copy.one, copy.many), Printable(TextOf(file)));
}

void KeepCopy(const Invocation& invocation, const EntryKind& kind, const std::string& before,
              std::span<const StoredEntry> entries)
{
    KeepCopy(invocation, before, {kind.One(), kind.Many(), kind.Extension(), entries.size(), kind.Format(entries)});
}

void RequireWholeCopy(const Invocation& invocation, const EntryKind& kind, std::span<const StoredEntry> entries)
{
    if (invocation.Has(kAcceptLoss) || invocation.Has(kNoCopy))
        return;
    if (const std::size_t garbled = TellGarbled(kind, entries); garbled != 0)
        throw Failure(kRefused,
                      fmt::format("text-lost: a copy of {} would not be whole. Nothing was changed.",
                                  Counted(garbled, kind.One(), kind.Many())),
                      fmt::format("{} goes on all the same.", kAcceptLoss));
}

void SpareGarbled(const EntryKind& kind, Plan& plan, const Inventory& inventory)
{
    std::set<std::uint32_t> garbled;
    for (const StoredEntry& stored : inventory.entries)
        if (kind.LooksGarbled(stored.entry))
            garbled.insert(stored.index);
    for (PlannedEntry& planned : plan.entries) {
        if (planned.action != Action::Change || !planned.index || !garbled.contains(*planned.index))
            continue;
        planned.action = Action::CannotHold;
        planned.from.notes.push_back(
            {"text-lost", "", planned.from.line,
             fmt::format("the handset's {} may have characters that have no place in the code page, and '?' would be "
                         "written over them; {} does so",
                         kind.One(), kAcceptLoss)});
    }
}

void TellDeleted(const Invocation& invocation, std::size_t count, const std::string& one, const std::string& many)
{
    PrintDone(invocation.options,
              count == 0 ? fmt::format("There are no {} to delete.", many) : Counted(count, one, many) + " deleted.",
              {{{"", "", {{"deleted", "", count}}}}});
}

void Confirm(const Invocation& invocation, const std::string& question)
{
    if (invocation.Has(kYes))
        return;
    const auto answer = host::Ask(question + " [y/N] ");
    if (!answer)
        throw Failure(kUsage,
                      fmt::format("nobody can be asked \"{}\" on this input; say --yes to do it. Nothing was changed.",
                                  question));
    if (*answer != "y" && *answer != "Y" && *answer != "yes")
        throw Failure(kRefused, "nothing was changed.");
}

} // namespace phnctl
