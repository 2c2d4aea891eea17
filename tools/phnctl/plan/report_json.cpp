// A plan as programs read it. The words are stable.
#include "phnctl/plan/report.h"

namespace phnctl {

namespace {

const char* Word(Action action)
{
    switch (action) {
    case Action::Add:
        return "add";
    case Action::Change:
        return "change";
    case Action::Same:
        return "same";
    case Action::CannotHold:
        return "cannot-hold";
    case Action::NoRoom:
        return "no-room";
    case Action::LeftOut:
        return "left-out";
    }
    return "";
}

const char* Word(Result result)
{
    switch (result) {
    case Result::NotTried:
        return "not-tried";
    case Result::Written:
        return "written";
    case Result::Different:
        return "different";
    case Result::Failed:
        return "failed";
    }
    return "";
}

Json ToJson(const std::vector<Difference>& differences)
{
    JsonList list;
    for (const Difference& difference : differences)
        list.push_back({JsonObject{
            {"property", {difference.property}}, {"before", {difference.before}}, {"after", {difference.after}}}});
    return {std::move(list)};
}

Json ToJson(const std::vector<Note>& notes)
{
    JsonList list;
    for (const Note& note : notes)
        list.push_back({JsonObject{{"code", {note.code}},
                                   {"property", {note.property}},
                                   {"line", {static_cast<std::int64_t>(note.line)}},
                                   {"text", {note.text}}}});
    return {std::move(list)};
}

Json ToJson(const EntryForm& form, const Deletion& deletion)
{
    const bool isGone = deletion.result == Result::Written;
    JsonObject object{{"title", {form.Title(deletion.stored.entry)}},
                      {"index", {std::int64_t{deletion.stored.index}}},
                      {"result", {std::string(isGone ? "deleted" : Word(deletion.result))}}};
    if (!deletion.notes.empty())
        object.emplace_back("notes", ToJson(deletion.notes));
    if (!deletion.problem.empty())
        object.emplace_back("problem", Json{deletion.problem});
    return {std::move(object)};
}

Json ToJson(const Entry& entry)
{
    JsonList list;
    for (const EntryField& field : entry.fields)
        list.push_back({JsonObject{{"property", {field.property}}, {"value", {field.value}}}});
    return {std::move(list)};
}

Json ToJson(const EntryForm& form, const PlannedEntry& planned)
{
    const auto index = planned.ShownIndex();
    JsonObject object{{"file", {planned.from.file}},
                      {"line", {static_cast<std::int64_t>(planned.from.line)}},
                      {"title", {form.Title(planned.from.entry)}},
                      {"action", {std::string(Word(planned.action))}},
                      {"index", index ? Json{std::int64_t{*index}} : Json{nullptr}},
                      {"notes", ToJson(planned.from.notes)},
                      {"target", ToJson(planned.target)},
                      {"changes", ToJson(planned.changes)},
                      {"result", {std::string(Word(planned.result))}},
                      {"readBack", ToJson(planned.readBack)}};
    if (!planned.problem.empty())
        object.emplace_back("problem", Json{planned.problem});
    return {std::move(object)};
}

} // namespace

Json PlanJson(const EntryForm& form, const Plan& plan)
{
    JsonList entries;
    for (const PlannedEntry& planned : plan.entries)
        entries.push_back(ToJson(form, planned));
    JsonList deletions;
    for (const Deletion& deletion : plan.deletions)
        deletions.push_back(ToJson(form, deletion));
    const auto number = [](std::size_t count) { return Json{static_cast<std::int64_t>(count)}; };
    const auto result = [&](Result which) {
        return number(plan.Count(Action::Add, which) + plan.Count(Action::Change, which));
    };
    return {JsonObject{{"kind", {form.Many()}},
                       {"applied", {plan.isApplied}},
                       {"interrupted", {plan.isInterrupted}},
                       {"counts",
                        {JsonObject{{"add", number(plan.Count(Action::Add))},
                                    {"change", number(plan.Count(Action::Change))},
                                    {"same", number(plan.Count(Action::Same))},
                                    {"cannotHold", number(plan.Count(Action::CannotHold))},
                                    {"noRoom", number(plan.Count(Action::NoRoom))},
                                    {"leftOut", number(plan.Count(Action::LeftOut))},
                                    {"written", result(Result::Written)},
                                    {"different", result(Result::Different)},
                                    {"failed", result(Result::Failed)},
                                    {"delete", number(plan.deletions.size())},
                                    {"deleted", number(plan.Deleted())}}}},
                       {"entries", {std::move(entries)}},
                       {"deletions", {std::move(deletions)}}}};
}

} // namespace phnctl
