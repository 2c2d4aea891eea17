#include "phnctl/events/foreign/reading.h"

#include "phnctl/events/uid.h"
#include "phnctl/text/content_line.h"

#include <fmt/format.h>

namespace phnctl {

using namespace event_property;

namespace {

class ForeignEventReader
{
public:
    ForeignEventReader(icalcomponent* event, EventOutline outline) : m_event(event), m_outline(std::move(outline))
    {
        m_draft.line = m_outline.line;
        m_draft.lines = m_outline.lines;
    }

    EventDraft Read(const Companions& companions)
    {
        m_isWithSeries = companions.isWithSeries;
        m_draft.text = TextOf(m_event);
        m_draft.uid = Given(icalcomponent_get_uid(m_event));
        m_draft.created = ValueOf(ICAL_CREATED_PROPERTY);
        m_draft.modified = ValueOf(ICAL_LASTMODIFIED_PROPERTY);
        TakeRule(companions.series ? companions.series : m_event);
        TakeTimes(m_event, companions, m_draft);
        TakeAlarms();
        Look();
        icalproperty* const occurrence = First(ICAL_RECURRENCEID_PROPERTY);
        if (occurrence && !companions.series)
            BecomeInstance(occurrence);
        else if (!m_draft.uid.empty())
            m_draft.series = SeriesMark(m_draft.uid);
        if (!occurrence && !m_draft.uid.empty())
            m_draft.version = VersionOf(m_event);
        return std::move(m_draft);
    }

private:
    icalproperty* First(icalproperty_kind kind) const { return icalcomponent_get_first_property(m_event, kind); }

    std::string ValueOf(icalproperty_kind kind) const
    {
        icalproperty* const property = First(kind);
        return property ? Taken(icalproperty_get_value_as_string_r(property)) : std::string();
    }

    void TakeRule(icalcomponent* series)
    {
        icalproperty* const rule = icalcomponent_get_first_property(series, ICAL_RRULE_PROPERTY);
        m_draft.rule = rule ? Taken(icalproperty_get_value_as_string_r(rule)) : "";
        if (icalcomponent_count_properties(m_event, ICAL_RRULE_PROPERTY) > 1)
            m_draft.Tell("one-too-many", kRule, "the handset repeats an event by one rule");
    }

    // An event of its own, which the series leaves out.
    void BecomeInstance(icalproperty* occurrence)
    {
        const icaltimetype when = icalproperty_get_datetime_with_component(occurrence, m_event);
        if (!m_draft.uid.empty())
            m_draft.uid = MovedUid(m_draft.uid, InstantOf(when));
        m_draft.rule.clear();
        const auto time = FromLibical(when);
        const std::string day = time ? ShownDay(*time) : ValueOf(ICAL_RECURRENCEID_PROPERTY);
        if (m_draft.problem.empty())
            m_draft.Tell("occurrence-moved", "RECURRENCE-ID",
                         m_isWithSeries
                             ? fmt::format("an event of its own instead of the series' occurrence on {}", day)
                             : fmt::format("an event of its own; the series is not in the file, so where the handset "
                                           "has it, its occurrence on {} stays as well",
                                           day));
        if (IsForAllLater(m_event))
            m_draft.Tell("range-dropped", "RECURRENCE-ID",
                         "it stands for all later occurrences, too, which the file does not hold");
    }

    // The first that rings; one by mail only if there is no other.
    void TakeAlarms()
    {
        icalcomponent* chosen = nullptr;
        std::size_t number = 0;
        std::size_t chosenNumber = 0;
        bool isMail = false;
        for (icalcomponent* alarm = icalcomponent_get_first_component(m_event, ICAL_VALARM_COMPONENT); alarm;
             alarm = icalcomponent_get_next_component(m_event, ICAL_VALARM_COMPONENT), ++number) {
            icalproperty* const action = icalcomponent_get_first_property(alarm, ICAL_ACTION_PROPERTY);
            const std::string word = action ? UpperCase(Taken(icalproperty_get_value_as_string_r(action))) : "";
            if (word == "NONE" || !icalcomponent_get_first_property(alarm, ICAL_TRIGGER_PROPERTY))
                continue;
            const bool isBetter = !chosen || (isMail && word != "EMAIL");
            if (chosen)
                NoteAlarm(isBetter ? chosenNumber : number);
            if (!isBetter)
                continue;
            chosen = alarm;
            chosenNumber = number;
            isMail = word == "EMAIL";
        }
        if (chosenNumber < m_outline.alarms.size())
            m_draft.lines.merge(m_outline.alarms[chosenNumber]);
        if (chosen && m_draft.start && m_draft.end)
            TakeTrigger(icalcomponent_get_first_property(chosen, ICAL_TRIGGER_PROPERTY));
    }

    const char* OccurrenceCancelled() const
    {
        return m_isWithSeries
                   ? "this occurrence of the series was cancelled"
                   : "this occurrence was cancelled; the series is not in the file, so where the handset has "
                     "it, it stays";
    }

    void NoteAlarm(std::size_t number)
    {
        m_draft.Tell("one-too-many", "VALARM", "the handset keeps one alarm of an event");
        if (number < m_outline.alarms.size())
            m_draft.notes.back().line = m_outline.alarms[number]["BEGIN"];
    }

    void TakeTrigger(icalproperty* property)
    {
        const icaltriggertype trigger = icalproperty_get_trigger(property);
        const std::int64_t start = SecondsOf(*m_draft.start);
        std::int64_t ring = start + icaldurationtype_as_int(trigger.duration);
        icalparameter* const related = icalproperty_get_first_parameter(property, ICAL_RELATED_PARAMETER);
        if (const auto time = FromLibical(trigger.time); time && !icaltime_is_null_time(trigger.time))
            ring = SecondsOf(ZoneTimeOf(*time, m_draft.zone));
        else if (related && icalparameter_get_related(related) == ICAL_RELATED_END)
            ring += SecondsOf(*m_draft.end) - start;
        m_draft.alarm = (start - ring) / 60;
    }

    // What is lost on the way.
    void Look()
    {
        // All are found first: libical keeps one place in a component, which asking for a single property moves.
        std::vector<icalproperty*> properties;
        for (icalproperty* property = First(ICAL_ANY_PROPERTY); property;
             property = icalcomponent_get_next_property(m_event, ICAL_ANY_PROPERTY))
            properties.push_back(property);
        for (icalproperty* const property : properties)
            Look(property);
        if (!Given(icalcomponent_get_summary(m_event)).empty() &&
            m_draft.text != Given(icalcomponent_get_description(m_event)) && First(ICAL_DESCRIPTION_PROPERTY))
            ++m_dropped[kText];
        for (const auto& [name, count] : m_dropped)
            m_draft.Tell("dropped", name,
                         "a handset's event has no place for it" +
                             (count == 1 ? std::string() : fmt::format(" ({} of them)", count)));
    }

    void Look(icalproperty* property)
    {
        const std::string name = Given(icalproperty_get_property_name(property));
        switch (icalproperty_isa(property)) {
        case ICAL_RDATE_PROPERTY:
            return m_draft.Tell("exception-dropped", name, "the handset keeps no single dates beside a rule");
        case ICAL_STATUS_PROPERTY:
            if (icalproperty_get_status(property) == ICAL_STATUS_CANCELLED) {
                m_draft.problem = IsForAllLater(m_event)              ? "these occurrences of the series were cancelled"
                                  : First(ICAL_RECURRENCEID_PROPERTY) ? OccurrenceCancelled()
                                                                      : "the event was cancelled";
                m_draft.problemCode = "cancelled";
                m_draft.isCancelled = true;
                m_draft.isMeant = false;
            }
            return;
        case ICAL_CATEGORIES_PROPERTY:
        case ICAL_COMMENT_PROPERTY:
        case ICAL_CONTACT_PROPERTY:
        case ICAL_LOCATION_PROPERTY:
        case ICAL_ORGANIZER_PROPERTY:
        case ICAL_RESOURCES_PROPERTY:
        case ICAL_ATTENDEE_PROPERTY:
        case ICAL_ATTACH_PROPERTY:
        case ICAL_URL_PROPERTY:
        case ICAL_GEO_PROPERTY:
            ++m_dropped[name];
            return;
        case ICAL_X_PROPERTY:
            if (name == kOwnUid) // the tool's own, in a file that went through another program
                m_draft.uid = Given(icalproperty_get_x(property));
            return;
        case ICAL_XLICERROR_PROPERTY:
            LookAtError(Given(icalproperty_get_xlicerror(property)));
            return;
        default:
            return;
        }
    }

    // A property without a value says nothing that could be lost.
    void LookAtError(const std::string& text)
    {
        if (!text.starts_with("No value for"))
            m_draft.Tell("not-a-property", "", text);
    }

    icalcomponent* m_event;
    bool m_isWithSeries = false;
    EventOutline m_outline;
    EventDraft m_draft;
    std::map<std::string, int> m_dropped;
};

} // namespace

std::string VersionOf(icalcomponent* event)
{
    const auto valueOf = [&](icalproperty_kind kind) {
        icalproperty* const property = icalcomponent_get_first_property(event, kind);
        return property ? Taken(icalproperty_get_value_as_string_r(property)) : std::string();
    };
    const std::string modified = valueOf(ICAL_LASTMODIFIED_PROPERTY);
    return fmt::format("{:010} {}", std::max(icalcomponent_get_sequence(event), 0),
                       modified.empty() ? valueOf(ICAL_DTSTAMP_PROPERTY) : modified);
}

std::string TextOf(icalcomponent* component)
{
    // What other programs show first is the summary.
    const std::string summary = Given(icalcomponent_get_summary(component));
    return summary.empty() ? Given(icalcomponent_get_description(component)) : summary;
}

EventDraft ReadEvent(icalcomponent* event, EventOutline outline, const Companions& companions)
{
    return ForeignEventReader(event, std::move(outline)).Read(companions);
}

} // namespace phnctl
