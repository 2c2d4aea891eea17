#include "phnctl/plan/report.h"

#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>

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

bool IsKept(const Note& note)
{
    return note.code == kKept;
}

bool HasMore(const PlannedEntry& planned)
{
    return std::any_of(planned.from.notes.begin(), planned.from.notes.end(), IsKept);
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
        return HasMore(planned);
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

void AppendEntry(std::string& text, const EntryForm& form, const Plan& plan, const PlannedEntry& planned)
{
    const std::string line = planned.from.line ? fmt::format(":{}", planned.from.line) : "";
    const std::string place = Printable(planned.from.file) + line;
    text += fmt::format("{:<11}  {}  {}", Heading(plan, planned), place, Printable(form.Title(planned.from.entry)));
    const auto index = planned.ShownIndex();
    text += index ? fmt::format("  (index {})\n", *index) : "\n";
    for (const Note& note : planned.from.notes)
        if (planned.action != Action::Same || IsKept(note))
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

std::string DeletionSummary(const EntryForm& form, const Plan& plan)
{
    const std::size_t all = plan.deletions.size();
    const std::string what = fmt::format("{} {} of the handset", all, all == 1 ? form.One() : form.Many());
    if (all == 0)
        return "";
    if (!plan.isApplied)
        return what + " to delete.\n";
    if (std::ranges::none_of(plan.deletions, [&](const Deletion& deletion) { return plan.IsReadyFor(deletion); }))
        return "Nothing was deleted, as not all of the files is on the handset.\n";
    return fmt::format("{} to delete, {} deleted.\n", what, plan.Deleted());
}

using Amount = std::pair<std::size_t, const char*>;

std::string Sentence(std::initializer_list<Amount> amounts)
{
    std::string text;
    for (const auto& [count, words] : amounts)
        if (count != 0)
            text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, words);
    return text;
}

// What concerns many entries at once.
std::string Remarks(const Plan& plan)
{
    std::string text;
    const auto isWithout = [](const PlannedEntry& planned) { return planned.action == Action::NoRoom; };
    const auto without = std::find_if(plan.entries.begin(), plan.entries.end(), isWithout);
    if (plan.isFull)
        text += "The handset is full; delete something to make room.\n";
    else if (without != plan.entries.end())
        text += fmt::format("The handset is full before {}:{}; delete something to make room.\n",
                            Printable(without->from.file), without->from.line);
    const auto kept = std::count_if(plan.entries.begin(), plan.entries.end(), HasMore);
    if (kept != 0)
        text +=
            fmt::format("{} of them {} more on the handset than in the files, and keep{} it; --replace takes it off.\n",
                        kept, kept == 1 ? "has" : "have", kept == 1 ? "s" : "");
    return text;
}

std::string Summary(const EntryForm& form, const Plan& plan)
{
    const std::size_t all = plan.entries.size();
    std::string text = fmt::format("{} {}: ", all, all == 1 ? form.One() : form.Many());
    const std::size_t same = plan.Count(Action::Same);
    const std::size_t unfit = plan.Count(Action::CannotHold);
    const std::size_t leftOut = plan.Count(Action::LeftOut);
    if (!plan.isApplied)
        return text +
               Sentence({{plan.Count(Action::Add), "to add"},
                         {plan.Count(Action::Change), "to change"},
                         {same, "there already"},
                         {unfit, "that the handset cannot hold"},
                         {leftOut, "left out"},
                         {plan.Count(Action::NoRoom), "without a place on the handset"}}) +
               ".\n" + Remarks(plan);
    const auto count = [&](Result result) {
        return plan.Count(Action::Add, result) + plan.Count(Action::Change, result);
    };
    text += Sentence({{plan.Count(Action::Add, Result::Written), "added"},
                      {plan.Count(Action::Change, Result::Written), "changed"},
                      {same, "there already"},
                      {unfit, "that the handset cannot hold"},
                      {leftOut, "left out"},
                      {count(Result::Different), "stored otherwise than asked"},
                      {count(Result::Failed), "failed"},
                      {plan.Count(Action::NoRoom), "without a place on the handset"},
                      {count(Result::NotTried), "not tried"}});
    const auto held = std::ranges::count_if(plan.entries, &PlannedEntry::IsHeld);
    text += ".\n";
    if (all == 1 && leftOut == 0)
        text += fmt::format("It is {}on the handset.\n", held == 1 ? "" : "not ");
    else if (all != leftOut)
        text += fmt::format("{} of {} {} on the handset.\n", held, all - leftOut, held == 1 ? "is" : "are");
    if (count(Result::NotTried) != 0 && !plan.isFull)
        text += "Run it again to go on where it stopped.\n";
    return text + Remarks(plan);
}

} // namespace

std::string PlanText(const EntryForm& form, const Plan& plan)
{
    std::string text;
    for (const PlannedEntry& planned : plan.entries)
        if (IsWorthTelling(plan, planned))
            AppendEntry(text, form, plan, planned);
    for (const Deletion& deletion : plan.deletions)
        AppendDeletion(text, form, plan, deletion);
    return text + Summary(form, plan) + DeletionSummary(form, plan);
}

} // namespace phnctl
