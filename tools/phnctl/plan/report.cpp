#include "phnctl/plan/report.h"

#include "phnctl/text/table.h"
#include "phnctl/text/text.h"
#include "phnctl/text/wrapping.h"

#include <fmt/format.h>

namespace phnctl {

namespace {

// What a person reads at the head of a paragraph.
const char* Heading(const Plan& plan, const PlannedEntry& planned)
{
    if (planned.action == Action::CannotHold)
        return "cannot hold";
    if (planned.action == Action::LeftOut)
        return "left out";
    if (planned.action == Action::Same)
        return "no change";
    const bool isNew = planned.action == Action::Add;
    if (!plan.isApplied)
        return isNew ? "add" : "change";
    if (planned.result == Result::Written)
        return isNew ? "added" : "changed";
    return planned.result == Result::Different ? "DIFFERENT" : "FAILED";
}

// What a person has to read: not each of the entries that an interrupt left out, and of what stays as it is only that
// which has more.
bool IsWorthTelling(const Plan& plan, const PlannedEntry& planned)
{
    switch (planned.action) {
    case Action::Add:
    case Action::Change:
        return !plan.isApplied || planned.result != Result::NotTried;
    case Action::Same:
        return planned.KeepsMore();
    case Action::CannotHold:
    case Action::LeftOut:
        return true;
    case Action::NoRoom:
        break;
    }
    return false;
}

void AppendDifferences(std::string& text, const EntryForm& form, const std::vector<Difference>& differences,
                       const char* introduction)
{
    const auto shown = [](const std::string& value) { return value.empty() ? "(nothing)" : Printable(value); };
    for (const Difference& difference : differences)
        text += fmt::format("    {}{}: {} -> {}\n", introduction, form.Label(difference.property),
                            shown(difference.before), shown(difference.after));
}

void AppendNote(std::string& text, const Note& note)
{
    text += fmt::format("    {}: {}{}{}\n", note.code, note.property.empty() ? "" : Printable(note.property) + ", ",
                        note.line ? fmt::format("line {}: ", note.line) : "", Printable(note.text));
}

// What a new entry is going to hold beside its title: "Mobile 5551234567, Group 0".
std::string Values(const EntryForm& form, const Entry& entry)
{
    const std::vector<std::string> columns = form.Columns();
    const std::vector<std::string> row = form.Row(entry);
    const std::string title = form.Title(entry);
    std::string values;
    for (std::size_t i = 0; i < columns.size() && i < row.size(); ++i)
        if (!row[i].empty() && row[i] != title)
            values += fmt::format("{}{} {}", values.empty() ? "" : ", ", columns[i], Printable(row[i]));
    return values;
}

void AppendEntry(std::string& text, const EntryForm& form, const Plan& plan, const PlannedEntry& planned,
                 unsigned width)
{
    const std::string line = planned.from.line ? fmt::format(":{}", planned.from.line) : "";
    const std::string place = planned.from.file.empty() ? "" : Printable(planned.from.file) + line + "  ";
    text += fmt::format("{:<11}  {}{}", Heading(plan, planned), place, Printable(form.Title(planned.from.entry)));
    const auto index = planned.ShownIndex();
    text += index ? fmt::format("  (index {})\n", *index) : "\n";
    if (width != 0 && planned.action == Action::Add && !plan.isApplied)
        text += Fitted("    " + Values(form, planned.target), width) + '\n';
    for (const Note& note : planned.from.notes)
        if (planned.action != Action::Same || note.code == kKept)
            AppendNote(text, note);
    AppendDifferences(text, form, planned.changes, "");
    AppendDifferences(text, form, planned.readBack, "read back differs, ");
    if (!planned.problem.empty())
        text += fmt::format("    {}\n", planned.problem);
}

const char* Heading(const Plan& plan, const Deletion& deletion)
{
    if (deletion.result == Result::Written)
        return "deleted";
    return deletion.result == Result::Failed ? "FAILED" : plan.isApplied ? "not deleted" : "delete";
}

void AppendDeletion(std::string& text, const EntryForm& form, const Plan& plan, const Deletion& deletion)
{
    text += fmt::format("{:<11}  {}  (index {})\n", Heading(plan, deletion),
                        Printable(form.Title(deletion.stored.entry)), deletion.stored.index);
    for (const Note& note : deletion.notes)
        AppendNote(text, note);
    if (!deletion.problem.empty())
        text += fmt::format("    {}\n", deletion.problem);
}

} // namespace

std::string PlanText(const EntryForm& form, const Plan& plan, unsigned width)
{
    std::string text;
    for (const PlannedEntry& planned : plan.entries)
        if (IsWorthTelling(plan, planned))
            AppendEntry(text, form, plan, planned, width);
    for (const Deletion& deletion : plan.deletions)
        AppendDeletion(text, form, plan, deletion);
    return Wrapped(text + SummaryText(form, plan), width, 2);
}

} // namespace phnctl
