#include "phnctl/events/file.h"
#include "phnctl/events/foreign/reading.h"
#include "phnctl/events/meeting.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>
#include <map>

namespace phnctl {

namespace {

constexpr std::size_t kMostChanges = 20; // of one series: each looks at all of its components

class CalendarReader
{
public:
    explicit CalendarReader(const std::string& text) : m_assembly(Assemble(text))
    {
        Find(m_assembly.root.get());
        Gather();
        for (const Component& component : m_components)
            Take(component);
        std::ranges::move(m_assembly.broken, std::back_inserter(m_drafts));
    }

    std::vector<EventDraft> Drafts() { return std::move(m_drafts); }

private:
    void Find(icalcomponent* component)
    {
        const icalcomponent_kind kind = icalcomponent_isa(component);
        if (kind != ICAL_XROOT_COMPONENT && kind != ICAL_VCALENDAR_COMPONENT) {
            m_components.push_back(ReadComponent(component, m_assembly));
            return;
        }
        icalcompiter next = icalcomponent_begin_component(component, ICAL_ANY_COMPONENT);
        for (; icalcompiter_deref(&next); icalcompiter_next(&next))
            Find(icalcompiter_deref(&next));
    }

    void Gather()
    {
        for (const Component& component : m_components) {
            if (!component.IsEvent())
                continue;
            Family& family = m_families[component.uid];
            if (component.occurrence)
                family.instances.push_back(&component);
            else if (!family.newest || component.version >= family.newest->version)
                family.newest = &component;
        }
        for (auto& [uid, family] : m_families) {
            if (family.newest && family.newest->draft.rule.Repeats())
                family.series = family.newest;
            std::ranges::stable_sort(family.instances, {},
                                     [](const Component* instance) { return InstantOf(instance->occurrence->time); });
        }
    }

    void Take(const Component& component)
    {
        if (component.IsEvent())
            TakeEvent(component, m_families[component.uid]);
        else if (component.kind != "VTIMEZONE")
            LeaveOut(component, "not-an-event",
                     fmt::format("it is a {}: a handset's calendar keeps events", component.kind));
    }

    void LeaveOut(const Component& component, const char* code, std::string reason)
    {
        EventDraft& draft = m_drafts.emplace_back();
        draft.line = component.draft.line;
        draft.text = component.draft.text;
        draft.isMeant = false;
        draft.problemCode = code;
        draft.problem = std::move(reason);
    }

    void TakeEvent(const Component& event, const Family& family)
    {
        if (family.IsChange(event))
            return; // taken with its series
        // Ids that are the same in every event of a file, their versions, too, are no ids.
        if (!event.occurrence && !event.uid.empty() && event.version < family.newest->version)
            return LeaveOut(event, kOlderVersion, "the file holds a newer version of it");
        std::vector<EventDraft> drafts{DraftOf(event, family)};
        if (family.series == &event)
            for (const Component* const instance : family.instances)
                if (instance->IsForAllLater())
                    drafts.push_back(ChangeOf(drafts, *instance, family));
        std::ranges::move(PiecesOf(std::move(drafts)), std::back_inserter(m_drafts));
    }

    // What goes on with the series of the first draft.
    static EventDraft ChangeOf(const std::vector<EventDraft>& drafts, const Component& change, const Family& family)
    {
        EventDraft draft;
        draft.line = change.draft.line;
        draft.text = change.draft.text;
        draft.problem = drafts.front().problem;
        draft.problemCode = drafts.front().problemCode;
        draft.isMeant = drafts.front().isMeant;
        if (drafts.size() > kMostChanges)
            draft.problem = fmt::format("the series changes more than {} times", kMostChanges);
        return draft.problem.empty() ? DraftOf(change, family) : draft;
    }

    Assembly m_assembly;
    std::vector<Component> m_components; // in the file's order
    std::map<std::string, Family> m_families;
    std::vector<EventDraft> m_drafts;
};

} // namespace

std::vector<EventDraft> ReadForeignEvents(const std::string& text)
{
    icalerror_set_errors_are_fatal(0);
    return CalendarReader(text).Drafts();
}

} // namespace phnctl
