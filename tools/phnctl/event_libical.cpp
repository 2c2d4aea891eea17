// What libical does for the tool: it reads the calendars of other programs and finds the occurrences of rules.
#include "phnctl/event_file.h"

#include <algorithm>
#include <fmt/format.h>
#include <libical/ical.h>
#include <memory>

namespace phnctl {

namespace {

struct ComponentDeleter
{
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};

struct IteratorDeleter
{
    void operator()(icalrecur_iterator* iterator) const { icalrecur_iterator_free(iterator); }
};

// A text of libical's that the caller owns.
std::string Taken(char* text)
{
    const std::string taken = text ? text : "";
    icalmemory_free_buffer(text);
    return taken;
}

std::string Given(const char* text)
{
    return text ? text : "";
}

EventTime Converted(const icaltimetype& time)
{
    return {time.year,
            static_cast<unsigned>(time.month),
            static_cast<unsigned>(time.day),
            static_cast<unsigned>(time.hour),
            static_cast<unsigned>(time.minute),
            static_cast<unsigned>(time.second)};
}

// Nothing for a date that does not exist.
std::optional<EventTime> FromLibical(const icaltimetype& time)
{
    return ParseEventTime(EventTimeText(Converted(time)));
}

icaltimetype ToLibical(const EventTime& time)
{
    icaltimetype converted = icaltime_null_time();
    converted.year = time.year;
    converted.month = static_cast<int>(time.month);
    converted.day = static_cast<int>(time.day);
    converted.hour = static_cast<int>(time.hour);
    converted.minute = static_cast<int>(time.minute);
    converted.second = static_cast<int>(time.second);
    return converted;
}

class EventReader
{
public:
    EventReader(icalcomponent* event, std::size_t line) : m_event(event) { m_draft.line = line; }

    EventDraft Read()
    {
        TakeText();
        TakeRule();
        TakeTimes();
        TakeAlarms();
        TakeStamps();
        for (icalproperty* property = icalcomponent_get_first_property(m_event, ICAL_ANY_PROPERTY); property;
             property = icalcomponent_get_next_property(m_event, ICAL_ANY_PROPERTY))
            Look(property);
        return std::move(m_draft);
    }

private:
    icalproperty* First(icalproperty_kind kind) const { return icalcomponent_get_first_property(m_event, kind); }

    std::string ValueOf(icalproperty_kind kind) const
    {
        icalproperty* const property = First(kind);
        return property ? Taken(icalproperty_get_value_as_string_r(property)) : std::string();
    }

    // What other programs show first is the summary.
    void TakeText()
    {
        const std::string description = Given(icalcomponent_get_description(m_event));
        m_draft.text = Given(icalcomponent_get_summary(m_event));
        if (m_draft.text.empty())
            m_draft.text = description;
        else if (!description.empty() && description != m_draft.text)
            Drop("DESCRIPTION");
    }

    void TakeRule()
    {
        if (!First(ICAL_RRULE_PROPERTY))
            return;
        m_draft.rule = ValueOf(ICAL_RRULE_PROPERTY);
        if (icalcomponent_count_properties(m_event, ICAL_RRULE_PROPERTY) > 1)
            Tell("one-too-many", "RRULE", "the handset repeats an event by one rule");
    }

    void TakeTimes()
    {
        icaltimetype start = icalcomponent_get_dtstart(m_event);
        icaltimetype end = icalcomponent_get_dtend(m_event);
        if (icaltime_is_null_time(start) || !icaltime_is_valid_time(start)) {
            m_draft.problem = "the event has no start";
            return;
        }
        if (icaltime_is_null_time(end) || !icaltime_is_valid_time(end))
            end = start;
        if (start.is_date)
            return TakeDays(start, end);
        const bool isSimple = !icaltime_is_utc(start) && !start.zone;
        if (isSimple && First(ICAL_DTSTART_PROPERTY) &&
            icalproperty_get_first_parameter(First(ICAL_DTSTART_PROPERTY), ICAL_TZID_PARAMETER))
            Tell("unknown-zone", "DTSTART", "the file does not define the zone: its times are taken for local ones");
        if (icaltime_is_utc(start) || (!isSimple && !KeepsClockTime(start))) {
            icaltimezone* const utc = icaltimezone_get_utc_timezone();
            start = icaltime_convert_to_zone(start, utc);
            end = icaltime_convert_to_zone(end, utc);
            m_draft.zone = kUtcZone;
        }
        m_draft.start = FromLibical(start);
        m_draft.end = FromLibical(end);
    }

    // An event that repeats stays at its time of day when the clocks change; in UTC it would not. Names that the
    // handset knows are kept.
    bool KeepsClockTime(const icaltimetype& start)
    {
        const std::string name = Given(icaltimezone_get_tzid(const_cast<icaltimezone*>(start.zone)));
        if (HoursBehindUtc(name)) {
            m_draft.zone = name;
            return true;
        }
        if (m_draft.rule.empty())
            return false;
        Tell("zone-dropped", "DTSTART", fmt::format("the event repeats at this local time, wherever '{}' is", name));
        return true;
    }

    // Whole days last from their first minute to their last; the end that the file states is the day behind them.
    void TakeDays(icaltimetype start, icaltimetype end)
    {
        start.is_date = 0;
        end.is_date = 0;
        start.hour = start.minute = start.second = 0;
        end.hour = end.minute = end.second = 0;
        const bool isLonger = icaltime_compare(start, end) < 0;
        icaltime_adjust(&end, isLonger ? 0 : 1, 0, -1, 0);
        m_draft.start = FromLibical(start);
        m_draft.end = FromLibical(end);
    }

    void TakeAlarms()
    {
        icalcomponent* const alarm = icalcomponent_get_first_component(m_event, ICAL_VALARM_COMPONENT);
        if (!alarm || !m_draft.start || !m_draft.end)
            return;
        if (icalcomponent_count_components(m_event, ICAL_VALARM_COMPONENT) > 1)
            Tell("one-too-many", "VALARM", "the handset keeps one alarm of an event");
        icalproperty* const property = icalcomponent_get_first_property(alarm, ICAL_TRIGGER_PROPERTY);
        if (!property)
            return;
        const icaltriggertype trigger = icalproperty_get_trigger(property);
        const std::int64_t start = SecondsOf(*m_draft.start);
        std::int64_t ring = start + icaldurationtype_as_int(trigger.duration);
        if (const auto time = FromLibical(trigger.time); time && !icaltime_is_null_time(trigger.time))
            ring = SecondsOf(*time);
        else if (IsRelatedToEnd(property))
            ring += SecondsOf(*m_draft.end) - start;
        m_draft.alarm = (start - ring) / 60;
    }

    static bool IsRelatedToEnd(icalproperty* property)
    {
        icalparameter* const related = icalproperty_get_first_parameter(property, ICAL_RELATED_PARAMETER);
        return related && icalparameter_get_related(related) == ICAL_RELATED_END;
    }

    void TakeStamps()
    {
        m_draft.uid = Given(icalcomponent_get_uid(m_event));
        m_draft.created = ValueOf(ICAL_CREATED_PROPERTY);
        m_draft.modified = ValueOf(ICAL_LASTMODIFIED_PROPERTY);
    }

    void Look(icalproperty* property)
    {
        const std::string name = Given(icalproperty_get_property_name(property));
        switch (icalproperty_isa(property)) {
        case ICAL_EXDATE_PROPERTY:
        case ICAL_RDATE_PROPERTY:
        case ICAL_RECURRENCEID_PROPERTY:
            return Tell("exception-dropped", name, "the handset keeps no exceptions of a rule");
        case ICAL_STATUS_PROPERTY:
            if (icalproperty_get_status(property) == ICAL_STATUS_CANCELLED)
                m_draft.problem = "the event was cancelled";
            return;
        case ICAL_LOCATION_PROPERTY:
        case ICAL_ATTENDEE_PROPERTY:
        case ICAL_ATTACH_PROPERTY:
        case ICAL_URL_PROPERTY:
        case ICAL_GEO_PROPERTY:
            return Drop(name);
        case ICAL_XLICERROR_PROPERTY:
            return Tell("not-a-property", "", Given(icalproperty_get_xlicerror(property)));
        default:
            return;
        }
    }

    void Tell(const char* code, const std::string& property, std::string text)
    {
        m_draft.notes.push_back({code, property, m_draft.line, std::move(text)});
    }

    void Drop(const std::string& property) { Tell("dropped", property, "a handset's event has no place for it"); }

    icalcomponent* m_event;
    EventDraft m_draft;
};

// The lines at which components of this name begin, in order: libical does not tell.
std::vector<std::size_t> BeginningsOf(const std::string& text, const std::string& name)
{
    std::vector<std::size_t> lines;
    std::size_t line = 1;
    for (std::size_t at = 0; at < text.size(); ++line) {
        if (text.compare(at, 6 + name.size(), "BEGIN:" + name) == 0)
            lines.push_back(line);
        at = std::min(text.find('\n', at), text.size() - 1) + 1;
    }
    return lines;
}

class CalendarReader
{
public:
    explicit CalendarReader(const std::string& text) : m_eventLines(BeginningsOf(text, "VEVENT"))
    {
        const std::unique_ptr<icalcomponent, ComponentDeleter> root(icalparser_parse_string(text.c_str()));
        if (root)
            Walk(root.get());
        else
            Refuse("it is no calendar");
    }

    std::vector<EventDraft> Take() { return std::move(m_drafts); }

private:
    void Walk(icalcomponent* component)
    {
        switch (icalcomponent_isa(component)) {
        case ICAL_XROOT_COMPONENT:
        case ICAL_VCALENDAR_COMPONENT:
            for (icalcomponent* inner = icalcomponent_get_first_component(component, ICAL_ANY_COMPONENT); inner;
                 inner = icalcomponent_get_next_component(component, ICAL_ANY_COMPONENT))
                Walk(inner);
            return;
        case ICAL_VEVENT_COMPONENT:
            m_drafts.push_back(EventReader(component, m_next < m_eventLines.size() ? m_eventLines[m_next] : 0).Read());
            ++m_next;
            return;
        case ICAL_VTIMEZONE_COMPONENT:
            return;
        default:
            return Refuse(fmt::format("the handset keeps no {}",
                                      Given(icalcomponent_kind_to_string(icalcomponent_isa(component)))));
        }
    }

    void Refuse(std::string problem) { m_drafts.emplace_back().problem = std::move(problem); }

    std::vector<std::size_t> m_eventLines;
    std::size_t m_next = 0;
    std::vector<EventDraft> m_drafts;
};

} // namespace

std::vector<EventDraft> ReadForeignEvents(const std::string& text)
{
    icalerror_set_errors_are_fatal(0);
    return CalendarReader(text).Take();
}

std::vector<EventTime> Occurrences(const EventTime& start, const std::string& rule, const EventTime& from,
                                   const EventTime& to, std::size_t limit)
{
    std::vector<EventTime> found;
    icalerror_set_errors_are_fatal(0);
    const std::unique_ptr<icalrecur_iterator, IteratorDeleter> iterator(
        icalrecur_iterator_new(icalrecurrencetype_from_string(rule.c_str()), ToLibical(start)));
    while (iterator && found.size() < limit) {
        const icaltimetype next = icalrecur_iterator_next(iterator.get());
        const EventTime time = Converted(next);
        if (icaltime_is_null_time(next) || time > to)
            break;
        if (time >= from)
            found.push_back(time);
    }
    return found;
}

} // namespace phnctl
