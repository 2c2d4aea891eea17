// The parts of reading another program's calendar, each in a file of its own: what an event says (event_foreign.cpp),
// when it takes place (event_foreign_times.cpp), and what a handset can hold of a series (event_series.cpp).
#pragma once

#include "phnctl/event_fields.h"
#include "phnctl/event_libical.h"
#include "phnctl/event_rule.h"

#include <optional>
#include <span>
#include <vector>

namespace phnctl {

// Takes start, end, zone, the rule's end and the exceptions. The rule and the lines must be known. `instances` are the
// components that take the place of single occurrences.
void TakeTimes(icalcomponent* event, std::span<icalcomponent* const> instances, EventDraft& draft);

// How it repeats, its end in its own time: nothing unless a handset can hold that, so that it is safe to search for its
// occurrences.
std::optional<EventRule> RuleOf(const EventDraft& draft);

// A series without its exceptions and from the handset's first year on: as many events as that takes.
std::vector<EventDraft> PiecesOf(EventDraft draft);

} // namespace phnctl
