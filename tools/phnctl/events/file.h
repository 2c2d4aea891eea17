// From the calendars of any program to events, and from events to a calendar that other programs read (RFC 5545). Used
// by the event kind. The library's own text and the tool's own files are read here; the calendars of other programs by
// libical, where the tool is built with it.
#pragma once

#include "phnctl/events/event.h"
#include "phnctl/plan/entry_kind.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace phnctl {

// What the tool names itself in its files.
inline constexpr const char* kCalendarProduct = "-//phnctl//phnctl//EN";

std::vector<Candidate> EventsOfFile(const std::string& file, const std::string& text);

// With the definitions of the zones that it uses; escaped, lines folded at 75 bytes, each id once.
std::string FileOfEvents(std::span<const StoredEntry> entries);

// One event in the library's dialect, from and to the code page.
Entry EventFromLibrary(std::string_view text);
std::string EventToLibrary(const Entry& entry);

// The events of the library's text and of the tool's own files. Nothing: it is another program's.
std::optional<std::vector<EventDraft>> ReadOwnEvents(std::string_view text);

// The events of another program's calendar, in any character set. Series are parted at their exceptions; what is no
// event comes as a draft that is not meant.
std::vector<EventDraft> ReadForeignEvents(const std::string& text);

// The starts of a repeating event that fall into a span, at most so many, in the event's own time, as is the rule's
// end. Throws Failure where the tool is built without libical.
std::vector<EventTime> Occurrences(const EventTime& start, const EventRule& rule, const EventTime& from,
                                   const EventTime& to, std::size_t limit);

} // namespace phnctl
