#include "phnctl/safeguard.h"

#include "phnctl/failure.h"
#include "phnctl/text.h"
#include "phnctl/text_file.h"
#include "system/system.h"

#include <fmt/format.h>
#include <windows.h>

namespace phnctl {

namespace {

constexpr const char* kYes = "--yes";
constexpr const char* kCopy = "--copy";
constexpr const char* kNoCopy = "--no-copy";

std::string CopyName(const Copy& copy, const std::string& before)
{
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return fmt::format("{}-before-{}-{:04}{:02}{:02}-{:02}{:02}{:02}{}", copy.many, before, now.wYear, now.wMonth,
                       now.wDay, now.wHour, now.wMinute, now.wSecond, copy.extension);
}

// The path, or the first of its numbered relatives that is not there yet.
std::filesystem::path FreePath(const std::filesystem::path& path)
{
    std::error_code error;
    std::filesystem::path free = path;
    for (unsigned number = 2; std::filesystem::exists(free, error); ++number)
        free.replace_filename(path.stem().concat(fmt::format("-{}", number)).concat(path.extension().native()));
    return free;
}

} // namespace

CommandOption ConfirmOption()
{
    return {kYes, "", "Do not ask"};
}

std::vector<CommandOption> CopyOptions()
{
    return {{kCopy, "FILE", "Where to keep a copy of what goes (default: a new file in the current folder)"},
            {kNoCopy, "", "Keep no copy"}};
}

void KeepCopy(const Invocation& invocation, const std::string& before, const Copy& copy)
{
    if (invocation.Has(kNoCopy) || copy.count == 0)
        return;
    const auto file = FreePath(PathOf(invocation.Value(kCopy).value_or(CopyName(copy, before))));
    WriteText(file, copy.text, Existing::Refuse);
    fmt::print(stderr, "A copy of {} {} is in {}.\n", copy.count, copy.count == 1 ? copy.one : copy.many,
               Printable(TextOf(file)));
}

void KeepCopy(const Invocation& invocation, const EntryKind& kind, const std::string& before,
              std::span<const StoredEntry> entries)
{
    KeepCopy(invocation, before, {kind.One(), kind.Many(), kind.Extension(), entries.size(), kind.Format(entries)});
}

void Confirm(const Invocation& invocation, const std::string& question)
{
    if (invocation.Has(kYes))
        return;
    const auto answer = host::Ask(question + " [y/N] ");
    if (!answer)
        throw Failure(kUsage, "nobody can be asked on this input; say --yes to do it. Nothing was deleted.");
    if (*answer != "y" && *answer != "Y" && *answer != "yes")
        throw Failure(kRefused, "nothing was deleted.");
}

} // namespace phnctl
