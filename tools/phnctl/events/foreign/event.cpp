#include "phnctl/events/foreign/reading.h"

#include "phnctl/events/uid.h"

#include <fmt/format.h>
#include <iterator>

namespace phnctl {

namespace {

// Minutes before the start.
std::int64_t LeadOf(const Component::Alarm& alarm, const EventDraft& draft)
{
    const std::int64_t start = SecondsOf(*draft.start);
    std::int64_t ring = start + icaldurationtype_as_int(alarm.trigger.duration);
    if (const auto time = FromLibical(alarm.trigger.time); time && !icaltime_is_null_time(alarm.trigger.time))
        ring = SecondsOf(ZoneTimeOf(*time, draft.zone));
    else if (alarm.isFromEnd)
        ring += SecondsOf(*draft.end) - start;
    return (start - ring) / 60;
}

void Cancel(EventDraft& draft, const Component& event, const Family& family)
{
    draft.problem = event.IsForAllLater() ? "these occurrences of the series were cancelled"
                    : !event.occurrence   ? "the event was cancelled"
                    : family.series       ? "this occurrence of the series was cancelled"
                                          : "this occurrence was cancelled; the series is not in the file, so where "
                                            "the handset has it, it stays";
    draft.problemCode = "cancelled";
    draft.isMeant = false;
}

// An event of its own, which the series leaves out.
void BecomeInstance(EventDraft& draft, const Component& event, const Family& family)
{
    const Component::Occurrence& occurrence = *event.occurrence;
    if (!draft.uid.empty())
        draft.uid = MovedUid(draft.uid, InstantOf(occurrence.time));
    draft.rule = {};
    const auto time = FromLibical(occurrence.time);
    const std::string day = time ? ShownDay(*time) : occurrence.written;
    if (draft.problem.empty())
        draft.Tell("occurrence-moved", "RECURRENCE-ID",
                   family.series ? fmt::format("an event of its own instead of the series' occurrence on {}", day)
                                 : fmt::format("an event of its own; the series is not in the file, so where the "
                                               "handset has it, its occurrence on {} stays as well",
                                               day));
    if (occurrence.isForAllLater)
        draft.Tell("range-dropped", "RECURRENCE-ID",
                   "it stands for all later occurrences, too, which the file does not hold");
}

} // namespace

EventDraft DraftOf(const Component& event, const Family& family)
{
    EventDraft draft = event.draft;
    if (family.IsChange(event))
        draft.rule = family.series->draft.rule;
    TakeTimes(draft, event, family);
    if (event.alarm && draft.start && draft.end)
        draft.alarm = LeadOf(*event.alarm, draft);
    std::ranges::copy(event.losses, std::back_inserter(draft.notes));
    if (draft.isCancelled)
        Cancel(draft, event, family);
    if (event.occurrence && !family.IsChange(event))
        BecomeInstance(draft, event, family);
    else if (!draft.uid.empty())
        draft.series = SeriesMark(draft.uid);
    if (!event.occurrence && !draft.uid.empty())
        draft.version = event.version;
    return draft;
}

} // namespace phnctl
