// The parts of reading another program's calendar, each in a file of its own: what an event says (event.cpp), when it
// takes place (times.cpp, clock.cpp), what a handset can hold of a series (series.cpp), and which events there are
// (calendar.cpp).
#pragma once

#include "phnctl/events/event.h"
#include "phnctl/events/foreign/libical.h"
#include "phnctl/events/foreign/outline.h"
#include "phnctl/events/rule.h"

#include <optional>
#include <vector>

namespace phnctl {

// What else a file says about the series that an event is, or goes on.
struct Companions
{
    std::vector<icalcomponent*> instances; // that take the place of single occurrences, or of all from one on
    bool isWithSeries = false;             // the file holds the series of which the event is an occurrence
    icalcomponent* series = nullptr;       // that the event goes on, with other values; null: it is none of those
};

// Does the component stand for the occurrence that it names and all later ones?
bool IsForAllLater(icalcomponent* event);

// The text that people read, of any component.
std::string TextOf(icalcomponent* component);

EventDraft ReadEvent(icalcomponent* event, EventOutline outline, const Companions& companions);

// Takes start, end, zone, the rule's end and the exceptions. The rule and the lines must be known.
void TakeTimes(icalcomponent* event, const Companions& companions, EventDraft& draft);

// The seconds east of UTC of a zone that does not change its clock in the year of a start.
std::optional<int> FixedOffset(icaltimetype start, icaltimezone* zone);

// Is it the local clock in that year, too?
bool IsLocalClock(icaltimetype start, icaltimezone* zone);

// What to add to a time of a zone for local time, then.
std::int64_t ToLocal(icaltimezone* zone, const EventTime& clock);

// Of a series that was moved to local time by a shift, which is right at its first occurrence: at others it is not, if
// the zone changes its clock on other days. The name is that of the zone.
void TellWhatIsOff(EventDraft& draft, icaltimezone* zone, std::int64_t shift, const std::string& name);

// How it repeats, its end in its own time: nothing unless a handset can hold that, so that it is safe to search for its
// occurrences.
std::optional<EventRule> RuleOf(const EventDraft& draft);

// A higher one is newer: by the number that a change raises, then by the time of the change.
std::string VersionOf(icalcomponent* event);

// A series without its exceptions and from the handset's first year on: as many events as that takes. It may change on
// the way: then each draft goes on where the one before it ends.
std::vector<EventDraft> PiecesOf(std::vector<EventDraft> drafts);

} // namespace phnctl
