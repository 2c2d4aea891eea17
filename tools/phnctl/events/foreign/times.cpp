#include "phnctl/events/foreign/reading.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

using namespace event_property;

namespace {

std::string NamedZone(icalproperty* property)
{
    icalparameter* const parameter =
        property ? icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER) : nullptr;
    return parameter ? Given(icalparameter_get_tzid(parameter)) : std::string();
}

class TimeReader
{
public:
    TimeReader(icalcomponent* event, EventDraft& draft) : m_event(event), m_draft(draft) {}

    void Take(const Companions& companions)
    {
        m_start = icalcomponent_get_dtstart(m_event);
        icaltimetype end = icalcomponent_get_dtend(m_event);
        if (icaltime_is_null_time(m_start) || !icaltime_is_valid_time(m_start)) {
            m_draft.problem = "the event has no start";
            return;
        }
        if (icaltime_is_null_time(end) || !icaltime_is_valid_time(end))
            end = m_start;
        if (m_start.is_date)
            TakeDays(end);
        else
            TakeClockTimes(end);
        TakeEndOfRule();
        if (companions.series)
            GoOn(companions.series);
        if (m_draft.rule.empty())
            return;
        TakeExceptions(m_event, ICAL_EXDATE_PROPERTY);
        for (icalcomponent* instance : companions.instances)
            if (IsForAllLater(instance))
                TakeChange(instance);
            else
                TakeExceptions(instance, ICAL_RECURRENCEID_PROPERTY);
        if (m_goesByLocalClock && !IsLocalClock(m_start, m_zone))
            TellWhatIsOff(m_draft, m_zone, m_shift,
                          NamedZone(icalcomponent_get_first_property(m_event, ICAL_DTSTART_PROPERTY)));
    }

private:
    // Whole days last from their first minute to their last; the end that the file states is the day behind them.
    void TakeDays(icaltimetype end)
    {
        m_start.is_date = end.is_date = 0;
        m_start.hour = m_start.minute = m_start.second = 0;
        end.hour = end.minute = end.second = 0;
        const bool isLonger = icaltime_compare(m_start, end) < 0;
        icaltime_adjust(&end, isLonger ? 0 : 1, 0, -1, 0);
        m_draft.start = FromLibical(m_start);
        m_draft.end = FromLibical(end);
    }

    void TakeClockTimes(icaltimetype end)
    {
        const std::string name = NamedZone(icalcomponent_get_first_property(m_event, ICAL_DTSTART_PROPERTY));
        m_zone = const_cast<icaltimezone*>(m_start.zone);
        if (icaltime_is_utc(m_start))
            m_draft.zone = kUtcZone;
        else if (m_zone && FromLibical(m_start))
            ChooseZone(name);
        else if (!name.empty())
            m_draft.Tell("unknown-zone", kStart,
                         fmt::format("its times are taken for local ones: '{}' is not defined in the file", name));
        m_draft.start = Own(m_start);
        m_draft.end = Own(end);
    }

    // UTC is every zone's for what happens once. What repeats stays at its time of day when the clocks change, and in
    // UTC it would not.
    void ChooseZone(const std::string& name)
    {
        const auto fixed = FixedOffset(m_start, m_zone);
        const std::string handsets = fixed && *fixed % 3600 == 0 ? NameOfZone(-*fixed / 3600) : "";
        if (!handsets.empty() && (HoursBehindUtc(name) || !m_draft.rule.empty())) {
            m_draft.zone = HoursBehindUtc(name) == -*fixed / 3600 ? name : handsets;
        } else if (m_draft.rule.empty()) {
            m_zone = icaltimezone_get_utc_timezone();
            m_draft.zone = kUtcZone;
        } else if (fixed && !IsLocalClock(m_start, m_zone)) {
            m_draft.zone = kUtcZone;
            MoveSeries(name, -*fixed);
        } else {
            m_goesByLocalClock = true;
            EventTime first = Converted(m_start);
            first.year = std::clamp(first.year, kFirstYear, kLastYear);
            MoveSeries(name, ToLocal(m_zone, first));
        }
    }

    void MoveSeries(const std::string& name, std::int64_t shift)
    {
        const EventTime before = Converted(m_start);
        const EventTime after = TimeOf(SecondsOf(before) + shift);
        const auto dayOf = [](const EventTime& time) { return SecondsOf({time.year, time.month, time.day}) / 86400; };
        EventRule rule;
        std::string problem;
        const auto days = static_cast<int>(dayOf(after) - dayOf(before));
        m_shift = shift;
        if (days == 0 || !rule.Parse(m_draft.rule, problem))
            return;
        if (rule.MoveDays(days)) {
            m_draft.rule = rule.Text();
        } else {
            m_draft.problemCode = "zone";
            m_draft.problem = fmt::format("its rule counts the days of '{}', and here it is another day then", name);
        }
    }

    // A time of the file in the event's own.
    std::optional<EventTime> Own(icaltimetype time) const
    {
        if (time.zone && m_zone)
            time = icaltime_convert_to_zone(time, m_zone);
        const auto own = FromLibical(time);
        return own ? std::optional(TimeOf(SecondsOf(*own) + m_shift)) : std::nullopt;
    }

    void TakeEndOfRule()
    {
        EventRule rule;
        std::string problem;
        if (!m_zone || !rule.Parse(m_draft.rule, problem) || rule.until.empty())
            return;
        const bool isUtc = rule.until.size() == 16;
        if (!isUtc)
            rule.EndInOwnTime("");
        icaltimetype end = ToLibical(ParseEventTime(rule.until).value_or(EventTime()));
        end.zone = isUtc ? icaltimezone_get_utc_timezone() : nullptr;
        rule.until = EventTimeText(Own(end).value_or(EventTime()));
        m_draft.rule = rule.Text();
    }

    void TakeExceptions(icalcomponent* component, icalproperty_kind kind)
    {
        for (icalproperty* property = icalcomponent_get_first_property(component, kind); property;
             property = icalcomponent_get_next_property(component, kind)) {
            icaltimetype time = icalproperty_get_datetime_with_component(property, component);
            if (time.is_date || !m_draft.start) {
                time.hour = m_start.hour;
                time.minute = m_start.minute;
                time.second = m_start.second;
            }
            if (const auto own = Own(time))
                m_draft.exceptions.push_back(Moved(*own));
        }
    }

    // The series from one occurrence on: its other times are as far from the file's as this one's.
    void GoOn(icalcomponent* series)
    {
        m_from = OccurrenceOf(m_event);
        if (!m_from || !m_draft.start)
            return;
        m_distance = SecondsOf(*m_draft.start) - SecondsOf(*m_from);
        EventRule rule;
        std::string problem;
        if (rule.Parse(m_draft.rule, problem)) {
            rule.EndInOwnTime(m_draft.zone);
            const auto day = [](const EventTime& time) { return SecondsOf({time.year, time.month, time.day}) / 86400; };
            const auto days = static_cast<int>(day(*m_draft.start) - day(*m_from));
            if (days != 0 && !rule.MoveDays(days))
                m_draft.problem = "from here on the series is on other days than its rule";
            if (!rule.until.empty())
                rule.until = EventTimeText(Moved(ParseEventTime(rule.until).value_or(EventTime())));
            m_draft.rule = rule.Text();
        }
        m_draft.Tell(
            "series-parted", "RECURRENCE-ID",
            fmt::format("this says what becomes of the series from its occurrence on {} on", ShownDay(*m_from)));
        TakeExceptions(series, ICAL_EXDATE_PROPERTY);
    }

    // Where another component goes on with the series.
    void TakeChange(icalcomponent* instance)
    {
        const auto occurrence = OccurrenceOf(instance);
        if (occurrence && (!m_from || *m_from < *occurrence) &&
            (!m_draft.before || Moved(*occurrence) < *m_draft.before))
            m_draft.before = Moved(*occurrence);
    }

    std::optional<EventTime> OccurrenceOf(icalcomponent* instance) const
    {
        return Own(icalproperty_get_datetime_with_component(
            icalcomponent_get_first_property(instance, ICAL_RECURRENCEID_PROPERTY), instance));
    }

    EventTime Moved(const EventTime& own) const { return TimeOf(SecondsOf(own) + m_distance); }

    icalcomponent* m_event;
    EventDraft& m_draft;
    icaltimetype m_start{};
    icaltimezone* m_zone = nullptr;  // of the clock that the event's times are taken from; null: local, or a date
    std::int64_t m_shift = 0;        // from that clock to the event's own
    std::optional<EventTime> m_from; // the occurrence of the series from which on this is what takes place
    std::int64_t m_distance = 0;     // from that to the start
    bool m_goesByLocalClock = false; // though that of its zone may change on other days
};

} // namespace

bool IsForAllLater(icalcomponent* event)
{
    icalproperty* const occurrence = icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY);
    return occurrence && icalproperty_get_first_parameter(occurrence, ICAL_RANGE_PARAMETER);
}

void TakeTimes(icalcomponent* event, const Companions& companions, EventDraft& draft)
{
    TimeReader(event, draft).Take(companions);
}

} // namespace phnctl
