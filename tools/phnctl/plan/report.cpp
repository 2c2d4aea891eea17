#include "phnctl/plan/report.h"

#include "phnctl/text/text.h"
#include "phnctl/text/wrapping.h"

#include <algorithm>
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

bool HasNoPlace(const Note& note)
{
    return note.text.ends_with(kNoPlace);
}

// Address books write much that a handset has no place for: of several such properties one line.
void AppendNotes(std::string& text, std::vector<Note> notes)
{
    const auto first = std::ranges::find_if(notes, HasNoPlace);
    if (std::ranges::count_if(notes, HasNoPlace) > 1) {
        std::string names;
        for (const Note& note : notes)
            if (HasNoPlace(note))
                names += fmt::format("{}{}, line {}", names.empty() ? "" : "; ", note.property, note.line);
        *first = {first->code, "", 0, names + ": the handset has no place for them"};
        notes.erase(std::remove_if(first + 1, notes.end(), HasNoPlace), notes.end());
    }
    for (const Note& note : notes)
        AppendNote(text, note);
}

void AppendEntry(std::string& text, const EntryForm& form, const Plan& plan, const PlannedEntry& planned,
                 bool hasValues)
{
    const std::string line = planned.from.line ? fmt::format(":{}", planned.from.line) : "";
    const std::string place = planned.from.file.empty() ? "" : Printable(planned.from.file) + line + "  ";
    text += fmt::format("{:<11}  {}{}", Heading(plan, planned), place, Printable(form.Title(planned.from.entry)));
    const auto index = planned.ShownIndex();
    text += index ? fmt::format("  (index {})\n", *index) : "\n";
    if (hasValues && planned.action == Action::Add && !plan.isApplied)
        text += fmt::format("    {}\n", Printable(form.Values(planned.target)));
    std::vector<Note> notes = planned.from.notes;
    if (planned.action == Action::Same)
        std::erase_if(notes, [](const Note& note) { return note.code != kKept; });
    AppendNotes(text, std::move(notes));
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
            AppendEntry(text, form, plan, planned, width != 0);
    for (const Deletion& deletion : plan.deletions)
        AppendDeletion(text, form, plan, deletion);
    return Wrapped(text + SummaryText(form, plan), width, 2);
}

} // namespace phnctl
