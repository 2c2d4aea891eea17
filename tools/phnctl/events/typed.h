// What a person types for an event: when it is, how long it lasts, how it repeats. Used by `events add`. What is not
// clear is refused, never guessed: nobody looks for an event that is on another day.
#pragma once

#include "phnctl/events/rule.h"
#include "phnctl/events/time.h"

#include <string>

namespace phnctl {

struct TypedSpan
{
    EventTime start; // local times
    EventTime end;
};

// "2009-03-15 12:00 1h30", "tomorrow", "fri 18:30". Throws Failure(kUsage), also for what is over at `now`.
TypedSpan ParseTypedSpan(const std::string& text, const EventTime& now);

// "daily x10", "weekly mon,wed until 2009-06-01". Throws Failure(kUsage).
EventRule ParseTypedRule(const std::string& text, const EventTime& start);

} // namespace phnctl
