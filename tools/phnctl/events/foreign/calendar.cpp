#include "phnctl/events/file.h"
#include "phnctl/events/foreign/reading.h"
#include "phnctl/plan/plan.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>
#include <memory>

namespace phnctl {

namespace {

constexpr std::size_t kMostChanges = 20; // of one series: each looks at all of its components

struct ComponentDeleter
{
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};

struct Found
{
    icalcomponent* component;
    EventOutline outline;
};

// The components of one id.
struct Family
{
    const Found* newest = nullptr;       // of those that are no instance
    const Found* series = nullptr;       // that, if it repeats
    std::vector<const Found*> instances; // by the occurrence that they take the place of
};

bool Has(icalcomponent* component, icalproperty_kind kind)
{
    return icalcomponent_get_first_property(component, kind);
}

std::int64_t OccurrenceOf(const Found* instance)
{
    return InstantOf(icalproperty_get_datetime_with_component(
        icalcomponent_get_first_property(instance->component, ICAL_RECURRENCEID_PROPERTY), instance->component));
}

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
        Find(root.get());
        Gather();
        for (const Found& found : m_found)
            Read(found);
    }

    std::vector<EventDraft> Take() { return std::move(m_drafts); }

private:
    void Find(icalcomponent* component)
    {
        const icalcomponent_kind kind = icalcomponent_isa(component);
        if (kind != ICAL_XROOT_COMPONENT && kind != ICAL_VCALENDAR_COMPONENT) {
            const std::string name = Given(icalcomponent_kind_to_string(kind));
            const std::vector<EventOutline>& known = m_outlines[name];
            const std::size_t number = m_next[name]++;
            m_found.push_back({component, number < known.size() ? known[number] : EventOutline()});
            return;
        }
        for (icalcomponent* inner = icalcomponent_get_first_component(component, ICAL_ANY_COMPONENT); inner;
             inner = icalcomponent_get_next_component(component, ICAL_ANY_COMPONENT))
            Find(inner);
    }

    void Gather()
    {
        for (const Found& found : m_found) {
            if (icalcomponent_isa(found.component) != ICAL_VEVENT_COMPONENT)
                continue;
            Family& family = m_families[Given(icalcomponent_get_uid(found.component))];
            if (Has(found.component, ICAL_RECURRENCEID_PROPERTY))
                family.instances.push_back(&found);
            else if (!family.newest || VersionOf(found.component) >= VersionOf(family.newest->component))
                family.newest = &found;
        }
        for (auto& [uid, family] : m_families) {
            if (family.newest && Has(family.newest->component, ICAL_RRULE_PROPERTY))
                family.series = family.newest;
            std::ranges::stable_sort(family.instances, {}, OccurrenceOf);
        }
    }

    void Read(const Found& found)
    {
        const icalcomponent_kind kind = icalcomponent_isa(found.component);
        if (kind == ICAL_VEVENT_COMPONENT) {
            ReadVEvent(found);
        } else if (kind != ICAL_VTIMEZONE_COMPONENT) {
            LeaveOut(found, "not-an-event",
                     fmt::format("it is a {}: a handset's calendar keeps events",
                                 Given(icalcomponent_kind_to_string(kind))));
        }
    }

    void LeaveOut(const Found& found, const char* code, std::string reason)
    {
        EventDraft& draft = m_drafts.emplace_back();
        draft.line = found.outline.line;
        draft.text = TextOf(found.component);
        draft.isMeant = false;
        draft.problemCode = code;
        draft.problem = std::move(reason);
    }

    // Ids that are the same in every event of a file, their versions, too, are no ids.
    static bool IsOlder(const Found& found, const Family& family)
    {
        return &found != family.newest && !Has(found.component, ICAL_RECURRENCEID_PROPERTY) &&
               Has(found.component, ICAL_UID_PROPERTY) &&
               VersionOf(found.component) < VersionOf(family.newest->component);
    }

    void ReadVEvent(const Found& found)
    {
        const Family& family = m_families[Given(icalcomponent_get_uid(found.component))];
        if (family.series && IsForAllLater(found.component))
            return; // read with its series
        if (IsOlder(found, family))
            return LeaveOut(found, kOlderVersion, "the file holds a newer version of it");
        Companions companions;
        companions.isWithSeries = family.series;
        if (family.series == &found)
            for (const Found* const instance : family.instances)
                companions.instances.push_back(instance->component);
        std::vector<EventDraft> drafts{ReadEvent(found.component, found.outline, companions)};
        companions.series = found.component;
        if (family.series == &found)
            for (const Found* const instance : family.instances)
                if (IsForAllLater(instance->component))
                    drafts.push_back(ReadChange(*instance, companions, drafts));
        std::ranges::move(PiecesOf(std::move(drafts)), std::back_inserter(m_drafts));
    }

    // What goes on with the series of the first draft.
    static EventDraft ReadChange(const Found& change, const Companions& companions,
                                 const std::vector<EventDraft>& drafts)
    {
        EventDraft draft;
        draft.line = change.outline.line;
        draft.text = TextOf(change.component);
        draft.problem = drafts.front().problem;
        draft.problemCode = drafts.front().problemCode;
        draft.isMeant = drafts.front().isMeant;
        if (drafts.size() > kMostChanges)
            draft.problem = fmt::format("the series changes more than {} times", kMostChanges);
        return draft.problem.empty() ? ReadEvent(change.component, change.outline, companions) : draft;
    }

    std::map<std::string, std::vector<EventOutline>> m_outlines;
    std::map<std::string, std::size_t> m_next;
    std::vector<Found> m_found; // in the file's order
    std::map<std::string, Family> m_families;
    std::vector<EventDraft> m_drafts;
};

} // namespace

std::vector<EventDraft> ReadForeignEvents(const std::string& text)
{
    icalerror_set_errors_are_fatal(0);
    return CalendarReader(text).Take();
}

} // namespace phnctl
