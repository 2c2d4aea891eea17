#include "phnctl/plan/run_record.h"

#include "phnctl/text/counted.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "phnctl/text/text_file.h"
#include "system/files.h"

#include <algorithm>
#include <fmt/format.h>
#include <system_error>

namespace phnctl {

namespace fs = std::filesystem;

namespace {

constexpr const char* kCopy = "--copy";
constexpr const char* kCopies = "--copies";

// The path, or the first of its numbered relatives that is not there yet.
fs::path FreePath(const fs::path& path)
{
    std::error_code error;
    fs::path free = path;
    for (unsigned number = 2; fs::exists(free, error); ++number)
        free.replace_filename(path.stem().concat(fmt::format("-{}", number)).concat(path.extension().native()));
    return free;
}

// The handset of --simulator ends with the command: what was written to it needs no way back, and its runs would stand
// in the way of a real handset's.
bool IsKept(const Invocation& invocation)
{
    const bool isAsked = invocation.Has(kCopy) || invocation.Has(kCopies);
    return isAsked || !(invocation.Has(kNoCopy) || invocation.options.simulator);
}

} // namespace

std::vector<CommandOption> CopyOptions()
{
    return {{kCopy, "FILE", "Where to keep a copy of what goes (default: beside what 'phnctl undo' needs)"},
            {kNoCopy, "", "Keep no copy, and nothing to take this back with"}};
}

std::vector<CommandOption> CopiesOptions()
{
    return {{kCopies, "FOLDER", "Where to keep copies of what goes (default: beside what 'phnctl undo' needs)"},
            {kNoCopy, "", "Keep no copies, and nothing to take this back with"}};
}

RunRecord::RunRecord(const Invocation& invocation, const Handset& handset, JournalRun run)
    : m_invocation(invocation), m_isKept(IsKept(invocation)), m_run(std::move(run))
{
    if (m_isKept)
        m_run.handset = IdentityOf(handset);
}

JournalHandset RunRecord::IdentityOf(const Handset& handset)
{
    const auto info = handset.Read(handset.Api().GetDeviceInfo, "reading the identity");
    return {FromHandset(info.szModel), FromHandset(info.szESN)};
}

const fs::path& RunRecord::Folder()
{
    if (m_folder.empty()) {
        std::string name = m_run.command;
        std::ranges::replace(name, ' ', '-');
        m_folder = MakeRunFolder(name);
    }
    return m_folder;
}

fs::path RunRecord::FileFor(const Copy& copy)
{
    if (const auto file = m_invocation.Value(kCopy))
        return FreePath(PathOf(*file));
    const auto given = m_invocation.Value(kCopies);
    const fs::path folder = given ? PathOf(*given) : Folder();
    MakeFolder(folder);
    return FreePath(folder / (copy.many + copy.extension));
}

void RunRecord::KeepCopy(const Copy& copy)
{
    if (!m_isKept || copy.count == 0)
        return;
    const auto file = FileFor(copy);
    WriteText(file, copy.text, Existing::Refuse);
    fmt::print(stderr, "A copy of {} is in {}.\n", Counted(copy.count, copy.one, copy.many), Printable(TextOf(file)));
}

void RunRecord::KeepCopy(const EntryKind& kind, std::span<const StoredEntry> entries)
{
    KeepCopy({kind.One(), kind.Many(), kind.Extension(), entries.size(), kind.Format(entries)});
}

std::size_t RunRecord::Expect(const std::vector<JournalStep>& steps)
{
    if (!m_isKept || steps.empty())
        return 0;
    if (!m_journal)
        m_journal.emplace(Folder(), m_run);
    return m_journal->Expect(steps);
}

void RunRecord::Expect(const std::string& kind, Plan& plan, const std::vector<StoredEntry>& stored)
{
    const auto before = [&](std::uint32_t index) -> std::optional<Entry> {
        const auto found = std::ranges::find(stored, index, &StoredEntry::index);
        return found == stored.end() ? std::nullopt : std::optional(found->entry);
    };
    std::vector<JournalStep> steps;
    for (PlannedEntry& planned : plan.entries) {
        const bool isChange = planned.action == Action::Change;
        if (!isChange && planned.action != Action::Add)
            continue;
        planned.step = steps.size();
        steps.push_back({kind, planned.index, isChange ? before(*planned.index) : std::nullopt, planned.target});
    }
    for (Deletion& deletion : plan.deletions) {
        deletion.step = steps.size();
        steps.push_back({kind, deletion.stored.index, before(deletion.stored.index), std::nullopt});
    }
    const std::size_t first = Expect(steps);
    for (PlannedEntry& planned : plan.entries)
        planned.step += first;
    for (Deletion& deletion : plan.deletions)
        deletion.step += first;
}

void RunRecord::BeginAt(std::size_t step, std::uint32_t index)
{
    if (m_journal)
        m_journal->BeginAt(step, index);
}

void RunRecord::Begin(std::size_t first, std::size_t count)
{
    if (m_journal)
        m_journal->Begin(first, count);
}

void RunRecord::Done(std::size_t first, std::size_t count)
{
    if (m_journal)
        m_journal->Done(first, count);
}

void RunRecord::DoneAt(std::size_t step, std::uint32_t index, const Entry& holds)
{
    if (m_journal)
        m_journal->DoneAt(step, index, holds);
}

void RunRecord::Over()
{
    if (m_journal)
        m_journal->Over();
}

} // namespace phnctl
