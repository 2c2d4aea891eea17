// How many of a plan's entries come to what, in sentences.
#include "phnctl/plan/report.h"

#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>

namespace phnctl {

namespace {

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
    const auto kept = std::ranges::count_if(plan.entries, &PlannedEntry::KeepsMore);
    if (kept != 0)
        text +=
            fmt::format("{} of them {} more on the handset than in the files, and keep{} it; --replace takes it off.\n",
                        kept, kept == 1 ? "has" : "have", kept == 1 ? "s" : "");
    return text;
}

std::string Summary(const EntryForm& form, const Plan& plan)
{
    const std::size_t all = plan.entries.size();
    if (all == 0)
        return plan.deletions.empty() ? fmt::format("There are no {} to write.\n", form.Many()) : "";
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

std::string SummaryText(const EntryForm& form, const Plan& plan)
{
    return Summary(form, plan) + DeletionSummary(form, plan);
}

} // namespace phnctl
