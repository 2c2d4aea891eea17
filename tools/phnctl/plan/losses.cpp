#include "phnctl/plan/losses.h"

#include "phnctl/plan/plan.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace {

constexpr std::size_t kShownTitles = 5;

std::string Described(const EntryForm& form, const Difference& difference)
{
    const std::string label = form.Label(difference.property);
    return difference.after.empty()
               ? fmt::format("without {} {}", label, difference.before)
               : fmt::format("with {} {} instead of {}", label, difference.after, difference.before);
}

std::string Names(const Loss& loss)
{
    std::string names;
    for (std::size_t i = 0; i < std::min(loss.titles.size(), kShownTitles); ++i)
        names += (i ? ", " : "") + Printable(loss.titles[i]);
    if (loss.titles.size() > kShownTitles)
        names += fmt::format(" and {} more", loss.titles.size() - kShownTitles);
    return names.empty() ? names : ": " + names;
}

} // namespace

void AddLoss(Losses& losses, const std::string& code, const std::string& text, const std::string& title)
{
    auto loss = std::find_if(losses.begin(), losses.end(),
                             [&](const Loss& other) { return other.code == code && other.text == text; });
    if (loss == losses.end())
        loss = losses.insert(losses.end(), {code, text});
    ++loss->count;
    loss->titles.push_back(title);
}

Losses LossesOf(const EntryKind& kind, std::span<const StoredEntry> entries)
{
    Losses losses;
    const Plan plan = kind.Meet(kind.Parse("", kind.Format(entries)), {}, Filling::Replace);
    for (std::size_t i = 0; i < std::min(entries.size(), plan.entries.size()); ++i) {
        const PlannedEntry& planned = plan.entries[i];
        const std::string title = kind.Title(entries[i].entry);
        if (planned.action != Action::Add) {
            AddLoss(losses, kNotRestored, planned.from.notes.back().text, title);
            continue;
        }
        for (const Difference& difference : Differences(entries[i].entry, planned.target))
            if (!difference.before.empty())
                AddLoss(losses, kPart, Described(kind, difference), title);
        if (kind.LooksGarbled(entries[i].entry))
            AddLoss(losses, kPart, "without the characters that a '?' in it may stand for", title);
    }
    return losses;
}

std::string LossText(const Losses& losses, const std::string& one, const std::string& many)
{
    std::string text;
    for (const Loss& loss : losses)
        text += fmt::format("  {} would {} {}{}\n", Counted(loss.count, one, many),
                            loss.code == kPart ? "come back" : "not come back, as", Printable(loss.text), Names(loss));
    return text;
}

Json LossJson(const Losses& losses)
{
    JsonList list;
    for (const Loss& loss : losses) {
        JsonList titles;
        for (const std::string& title : loss.titles)
            titles.push_back({title});
        list.push_back({JsonObject{{"code", {loss.code}},
                                   {"text", {loss.text}},
                                   {"count", {static_cast<std::int64_t>(loss.count)}},
                                   {"titles", {std::move(titles)}}}});
    }
    return {std::move(list)};
}

void TellLosses(const Losses& losses, const std::string& one, const std::string& many)
{
    if (!losses.empty())
        fmt::print(stderr, "A copy would not bring all of it back:\n{}", LossText(losses, one, many));
}

} // namespace phnctl
