#include "phnctl/events/foreign/component.h"

#include "phnctl/text/content_line.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>

namespace phnctl {

using namespace event_property;

namespace {

icalproperty* First(icalcomponent* component, icalproperty_kind kind)
{
    return icalcomponent_get_first_property(component, kind);
}

std::string ValueOf(icalcomponent* component, icalproperty_kind kind)
{
    icalproperty* const property = First(component, kind);
    return property ? Taken(icalproperty_get_value_as_string_r(property)) : std::string();
}

// The text that people read: what other programs show first is the summary.
std::string TextOf(icalcomponent* component)
{
    const std::string summary = Given(icalcomponent_get_summary(component));
    return summary.empty() ? Given(icalcomponent_get_description(component)) : summary;
}

class ForeignEventReader
{
public:
    ForeignEventReader(icalcomponent* event, const Assembly& assembly, Component& read)
        : m_event(event), m_assembly(assembly), m_origin(assembly.origins.at(event)), m_read(read), m_draft(read.draft)
    {
    }

    void Read()
    {
        m_read.uid = m_draft.uid = Given(icalcomponent_get_uid(m_event));
        const std::string modified = ValueOf(m_event, ICAL_LASTMODIFIED_PROPERTY);
        m_read.version = fmt::format("{:010} {}", std::max(icalcomponent_get_sequence(m_event), 0),
                                     modified.empty() ? ValueOf(m_event, ICAL_DTSTAMP_PROPERTY) : modified);
        m_draft.created = ParseEventTime(ValueOf(m_event, ICAL_CREATED_PROPERTY));
        m_draft.modified = ParseEventTime(modified);
        m_read.start = icalcomponent_get_dtstart(m_event);
        m_read.end = icalcomponent_get_dtend(m_event);
        m_read.zone = m_origin.zone;
        TakeOccurrence();
        TakeAlarms();
        // All are found first: libical keeps one place in a component, which asking for a single property moves.
        std::vector<icalproperty*> properties;
        for (icalproperty* property = First(m_event, ICAL_ANY_PROPERTY); property;
             property = icalcomponent_get_next_property(m_event, ICAL_ANY_PROPERTY))
            properties.push_back(property);
        for (icalproperty* const property : properties)
            Take(property);
        TellDropped();
        m_read.losses = std::exchange(m_draft.notes, {});
        if (!m_origin.rules.empty())
            m_draft.rule = ParseRule(m_origin.rules.front());
        if (m_origin.rules.size() > 1)
            m_draft.Tell("one-too-many", kRule, "the handset repeats an event by one rule");
    }

private:
    void TakeOccurrence()
    {
        icalproperty* const property = First(m_event, ICAL_RECURRENCEID_PROPERTY);
        if (property)
            m_read.occurrence = {icalproperty_get_datetime_with_component(property, m_event),
                                 Taken(icalproperty_get_value_as_string_r(property)),
                                 icalproperty_get_first_parameter(property, ICAL_RANGE_PARAMETER) != nullptr};
    }

    // The first that rings; one by mail only if there is no other.
    void TakeAlarms()
    {
        icalcomponent* chosen = nullptr;
        bool isMail = false;
        for (icalcomponent* alarm = icalcomponent_get_first_component(m_event, ICAL_VALARM_COMPONENT); alarm;
             alarm = icalcomponent_get_next_component(m_event, ICAL_VALARM_COMPONENT)) {
            const std::string action = UpperCase(ValueOf(alarm, ICAL_ACTION_PROPERTY));
            if (action == "NONE" || !First(alarm, ICAL_TRIGGER_PROPERTY))
                continue;
            const bool isBetter = !chosen || (isMail && action != "EMAIL");
            if (chosen)
                TellOfAlarm(isBetter ? chosen : alarm);
            if (!isBetter)
                continue;
            chosen = alarm;
            isMail = action == "EMAIL";
        }
        if (!chosen)
            return;
        const auto& lines = m_assembly.origins.at(chosen).lines;
        m_draft.lines.insert(lines.begin(), lines.end());
        icalproperty* const trigger = First(chosen, ICAL_TRIGGER_PROPERTY);
        icalparameter* const related = icalproperty_get_first_parameter(trigger, ICAL_RELATED_PARAMETER);
        m_read.alarm = {icalproperty_get_trigger(trigger),
                        related && icalparameter_get_related(related) == ICAL_RELATED_END};
    }

    void TellOfAlarm(icalcomponent* alarm)
    {
        m_draft.notes.push_back(
            {"one-too-many", "VALARM", m_assembly.origins.at(alarm).line, "the handset keeps one alarm of an event"});
    }

    void Take(icalproperty* property)
    {
        const std::string name = Given(icalproperty_get_property_name(property));
        switch (icalproperty_isa(property)) {
        case ICAL_EXDATE_PROPERTY:
            return m_read.exceptions.push_back(icalproperty_get_datetime_with_component(property, m_event));
        case ICAL_RDATE_PROPERTY:
            return m_draft.Tell("exception-dropped", name, "the handset keeps no single dates beside a rule");
        case ICAL_STATUS_PROPERTY:
            m_draft.isCancelled |= icalproperty_get_status(property) == ICAL_STATUS_CANCELLED;
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
        default:
            return;
        }
    }

    void TellDropped()
    {
        if (!Given(icalcomponent_get_summary(m_event)).empty() &&
            m_draft.text != Given(icalcomponent_get_description(m_event)) && First(m_event, ICAL_DESCRIPTION_PROPERTY))
            ++m_dropped[kText];
        for (const auto& [name, count] : m_dropped)
            m_draft.Tell("dropped", name,
                         fmt::format("{}a handset's event {}",
                                     count == 1 ? std::string() : fmt::format("{} of them: ", count), kNoPlace));
    }

    icalcomponent* m_event;
    const Assembly& m_assembly;
    const Assembly::Origin& m_origin;
    Component& m_read;
    EventDraft& m_draft;
    std::map<std::string, int> m_dropped;
};

} // namespace

Component ReadComponent(icalcomponent* component, const Assembly& assembly)
{
    const Assembly::Origin& origin = assembly.origins.at(component);
    Component read;
    read.kind = origin.kind;
    read.draft.line = origin.line;
    read.draft.lines = origin.lines;
    read.draft.notes = origin.notes;
    read.draft.text = TextOf(component);
    if (read.IsEvent())
        ForeignEventReader(component, assembly, read).Read();
    return read;
}

} // namespace phnctl
