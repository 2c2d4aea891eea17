#include "phnctl/events/foreign/reading.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

using namespace event_property;

namespace {

int DaysBetween(const EventTime& from, const EventTime& to)
{
    const auto dayOf = [](const EventTime& time) { return SecondsOf({time.year, time.month, time.day}) / 86400; };
    return static_cast<int>(dayOf(to) - dayOf(from));
}

class TimeReader
{
public:
    TimeReader(EventDraft& draft, const Component& event, const Family& family)
        : m_draft(draft), m_event(event), m_family(family), m_start(event.start)
    {
    }

    void Take()
    {
        if (icaltime_is_null_time(m_start) || !icaltime_is_valid_time(m_start)) {
            m_draft.problem = "the event has no start";
            return;
        }
        icaltimetype end = m_event.end;
        if (icaltime_is_null_time(end) || !icaltime_is_valid_time(end))
            end = m_start;
        if (m_start.is_date)
            TakeDays(end);
        else
            TakeClockTimes(end);
        TakeEndOfRule();
        const bool isChange = m_family.IsChange(m_event);
        if (isChange)
            GoOn();
        if (!m_draft.rule.Repeats())
            return;
        for (const icaltimetype& exception : m_event.exceptions)
            TakeException(exception);
        if (isChange || m_family.series == &m_event)
            for (const Component* const instance : m_family.instances)
                TakeInstance(*instance->occurrence);
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
        m_zone = const_cast<icaltimezone*>(m_start.zone);
        if (icaltime_is_utc(m_start))
            m_draft.zone = kUtcZone;
        else if (m_zone && FromLibical(m_start))
            ChooseZone();
        else if (!m_event.zone.empty())
            m_draft.Tell(
                "unknown-zone", kStart,
                fmt::format("its times are taken for local ones: '{}' is not defined in the file", m_event.zone));
        m_draft.start = Own(m_start);
        m_draft.end = Own(end);
    }

    // UTC is every zone's for what happens once. What repeats stays at its time of day when the clocks change, and in
    // UTC it would not.
    void ChooseZone()
    {
        const auto fixed = FixedOffset(m_start, m_zone);
        const auto stated = HoursBehindUtc(m_event.zone);
        const std::string handsets = fixed && *fixed % 3600 == 0 ? NameOfZone(-*fixed / 3600) : "";
        if (!handsets.empty() && (stated || m_draft.rule.Repeats())) {
            m_draft.zone = stated == -*fixed / 3600 ? m_event.zone : handsets;
        } else if (!m_draft.rule.Repeats()) {
            m_zone = icaltimezone_get_utc_timezone();
            m_draft.zone = kUtcZone;
        } else if (fixed && !IsLocalClock(m_start, m_zone)) {
            m_draft.zone = kUtcZone;
            MoveSeries(-*fixed);
        } else {
            EventTime first = Converted(m_start);
            first.year = std::clamp(first.year, kFirstYear, kLastYear);
            MoveSeries(ToLocal(m_zone, first));
            if (m_draft.problem.empty() && m_draft.rule.problem.empty() && !IsLocalClock(m_start, m_zone))
                m_draft.Tell("zone-dropped", kStart,
                             fmt::format("the handset has no '{}': it repeats at the local time of its first "
                                         "occurrence, and is off where that zone's clock changes on other days",
                                         m_event.zone));
        }
    }

    void MoveSeries(std::int64_t shift)
    {
        m_shift = shift;
        const EventTime before = Converted(m_start);
        const int days = DaysBetween(before, TimeOf(SecondsOf(before) + shift));
        if (days == 0 || !m_draft.rule.problem.empty() || m_draft.rule.MoveDays(days))
            return;
        m_draft.problemCode = "zone";
        m_draft.problem =
            fmt::format("its rule counts the days of '{}', and here it is another day then", m_event.zone);
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
        EventRule& rule = m_draft.rule;
        if (!m_zone || !rule.until)
            return;
        const bool isUtc = rule.until->form == StatedTime::Form::Utc;
        if (!isUtc)
            rule.EndInOwnTime("");
        icaltimetype end = ToLibical(rule.until->time);
        end.zone = isUtc ? icaltimezone_get_utc_timezone() : nullptr;
        rule.until = {Own(end).value_or(rule.until->time), StatedTime::Form::Clock};
    }

    void TakeException(icaltimetype time)
    {
        if (time.is_date || !m_draft.start) {
            time.hour = m_start.hour;
            time.minute = m_start.minute;
            time.second = m_start.second;
        }
        if (const auto own = Own(time))
            m_draft.exceptions.push_back(Moved(*own));
    }

    // The series from one occurrence on: its other times are as far from the file's as this one's.
    void GoOn()
    {
        m_from = Own(m_event.occurrence->time);
        if (!m_from || !m_draft.start)
            return;
        m_distance = SecondsOf(*m_draft.start) - SecondsOf(*m_from);
        EventRule& rule = m_draft.rule;
        if (rule.problem.empty()) {
            rule.EndInOwnTime(m_draft.zone);
            const int days = DaysBetween(*m_from, *m_draft.start);
            if (days != 0 && !rule.MoveDays(days))
                m_draft.problem = "from here on the series is on other days than its rule";
            if (rule.until)
                rule.until->time = Moved(rule.until->time);
        }
        m_draft.Tell(
            "series-parted", "RECURRENCE-ID",
            fmt::format("this says what becomes of the series from its occurrence on {} on", ShownDay(*m_from)));
        for (const icaltimetype& exception : m_family.series->exceptions)
            TakeException(exception);
    }

    // Another component takes the place of an occurrence, or goes on with the series there.
    void TakeInstance(const Component::Occurrence& instance)
    {
        if (!instance.isForAllLater)
            return TakeException(instance.time);
        const auto occurrence = Own(instance.time);
        if (occurrence && (!m_from || *m_from < *occurrence) &&
            (!m_draft.before || Moved(*occurrence) < *m_draft.before))
            m_draft.before = Moved(*occurrence);
    }

    EventTime Moved(const EventTime& own) const { return TimeOf(SecondsOf(own) + m_distance); }

    EventDraft& m_draft;
    const Component& m_event;
    const Family& m_family;
    icaltimetype m_start;
    icaltimezone* m_zone = nullptr;  // of the clock that the event's times are taken from; null: local, or a date
    std::int64_t m_shift = 0;        // from that clock to the event's own
    std::optional<EventTime> m_from; // the occurrence of the series from which on this is what takes place
    std::int64_t m_distance = 0;     // from that to the start
};

} // namespace

void TakeTimes(EventDraft& draft, const Component& event, const Family& family)
{
    TimeReader(draft, event, family).Take();
}

} // namespace phnctl
