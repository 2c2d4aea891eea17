#include "phnctl/event_foreign.h"

#include "phnctl/content_line.h"
#include "phnctl/event_file.h"
#include "phnctl/event_outline.h"
#include "phnctl/event_uid.h"

#include <fmt/format.h>
#include <memory>

namespace phnctl {

using namespace event_property;

namespace {

struct ComponentDeleter
{
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};

using Instances = std::map<std::string, std::vector<icalcomponent*>>; // by the id of their series

// What other programs show first is the summary.
std::string TextOf(icalcomponent* component)
{
    const std::string summary = Given(icalcomponent_get_summary(component));
    return summary.empty() ? Given(icalcomponent_get_description(component)) : summary;
}

class EventReader
{
public:
    EventReader(icalcomponent* event, EventOutline outline) : m_event(event), m_outline(std::move(outline))
    {
        m_draft.line = m_outline.line;
        m_draft.lines = m_outline.lines;
    }

    EventDraft Read(const Instances& instances)
    {
        m_draft.text = TextOf(m_event);
        m_draft.uid = Given(icalcomponent_get_uid(m_event));
        m_draft.created = ValueOf(ICAL_CREATED_PROPERTY);
        m_draft.modified = ValueOf(ICAL_LASTMODIFIED_PROPERTY);
        TakeRule();
        const auto own = instances.find(m_draft.uid);
        const bool isSeries = own != instances.end() && !m_draft.rule.empty();
        TakeTimes(m_event, isSeries ? std::span(own->second) : std::span<icalcomponent* const>(), m_draft);
        TakeAlarms();
        Look();
        if (icalproperty* const occurrence = First(ICAL_RECURRENCEID_PROPERTY))
            BecomeInstance(occurrence);
        else if (!m_draft.uid.empty())
            m_draft.series = SeriesMark(m_draft.uid);
        return std::move(m_draft);
    }

private:
    icalproperty* First(icalproperty_kind kind) const { return icalcomponent_get_first_property(m_event, kind); }

    std::string ValueOf(icalproperty_kind kind) const
    {
        icalproperty* const property = First(kind);
        return property ? Taken(icalproperty_get_value_as_string_r(property)) : std::string();
    }

    void TakeRule()
    {
        m_draft.rule = ValueOf(ICAL_RRULE_PROPERTY);
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
        if (m_draft.problem.empty())
            m_draft.Tell("occurrence-moved", "RECURRENCE-ID",
                         fmt::format("an event of its own instead of the series' occurrence on {}",
                                     time ? ShownDay(*time) : ValueOf(ICAL_RECURRENCEID_PROPERTY)));
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
                m_draft.problem = First(ICAL_RECURRENCEID_PROPERTY) ? "this occurrence of the series was cancelled"
                                                                    : "the event was cancelled";
                m_draft.problemCode = "cancelled";
                m_draft.isCancelled = true;
                m_draft.isMeant = false;
            }
            return;
        case ICAL_LOCATION_PROPERTY:
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
    EventOutline m_outline;
    EventDraft m_draft;
    std::map<std::string, int> m_dropped;
};

class CalendarReader
{
public:
    explicit CalendarReader(const std::string& text) : m_outlines(OutlineOf(text))
    {
        const std::unique_ptr<icalcomponent, ComponentDeleter> root(icalparser_parse_string(text.c_str()));
        if (!root) {
            m_drafts.emplace_back().problem = "its calendar is broken";
            return;
        }
        Walk(root.get(), [this](icalcomponent* component) { Gather(component); });
        Walk(root.get(), [this](icalcomponent* component) { Read(component); });
    }

    std::vector<EventDraft> Take() { return std::move(m_drafts); }

private:
    template <class Visit>
    static void Walk(icalcomponent* component, const Visit& visit)
    {
        const icalcomponent_kind kind = icalcomponent_isa(component);
        if (kind != ICAL_XROOT_COMPONENT && kind != ICAL_VCALENDAR_COMPONENT)
            return visit(component);
        for (icalcomponent* inner = icalcomponent_get_first_component(component, ICAL_ANY_COMPONENT); inner;
             inner = icalcomponent_get_next_component(component, ICAL_ANY_COMPONENT))
            Walk(inner, visit);
    }

    void Gather(icalcomponent* component)
    {
        if (icalcomponent_isa(component) == ICAL_VEVENT_COMPONENT &&
            icalcomponent_get_first_property(component, ICAL_RECURRENCEID_PROPERTY))
            m_instances[Given(icalcomponent_get_uid(component))].push_back(component);
    }

    void Read(icalcomponent* component)
    {
        const std::string name = Given(icalcomponent_kind_to_string(icalcomponent_isa(component)));
        const std::vector<EventOutline>& known = m_outlines[name];
        const std::size_t number = m_next[name]++;
        const EventOutline outline = number < known.size() ? known[number] : EventOutline();
        if (name == "VEVENT") {
            for (EventDraft& piece : PiecesOf(EventReader(component, outline).Read(m_instances)))
                m_drafts.push_back(std::move(piece));
        } else if (name != "VTIMEZONE") {
            EventDraft& other = m_drafts.emplace_back();
            other.line = outline.line;
            other.text = TextOf(component);
            other.isMeant = false;
            other.problem = fmt::format("it is a {}: a handset's calendar keeps events", name);
        }
    }

    std::map<std::string, std::vector<EventOutline>> m_outlines;
    std::map<std::string, std::size_t> m_next;
    Instances m_instances;
    std::vector<EventDraft> m_drafts;
};

} // namespace

std::vector<EventDraft> ReadForeignEvents(const std::string& text)
{
    icalerror_set_errors_are_fatal(0);
    return CalendarReader(text).Take();
}

} // namespace phnctl
