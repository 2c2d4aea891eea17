// The parts of reading another program's calendar, each in a file of its own: what its components say (component.cpp),
// what a handset can hold of an event (event.cpp) and its times (times.cpp, clock.cpp) and of a series (series.cpp),
// and which events there are (calendar.cpp).
#pragma once

#include "phnctl/events/foreign/component.h"

#include <optional>
#include <vector>

namespace phnctl {

EventDraft DraftOf(const Component& event, const Family& family);

// Adds start, end, zone and exceptions, and brings the rule to that zone.
void TakeTimes(EventDraft& draft, const Component& event, const Family& family);

// The seconds east of UTC of a zone that does not change its clock in the year of a start.
std::optional<int> FixedOffset(icaltimetype start, icaltimezone* zone);

// Is it the local clock in that year, too?
bool IsLocalClock(icaltimetype start, icaltimezone* zone);

// What to add to a time of a zone for local time, then.
std::int64_t ToLocal(icaltimezone* zone, const EventTime& clock);

// A series without its exceptions and from the handset's first year on: as many events as that takes. It may change on
// the way: then each draft goes on where the one before it ends.
std::vector<EventDraft> PiecesOf(std::vector<EventDraft> drafts);

} // namespace phnctl
