// What an event of the handset is made of: its text, its times and their zone, one rule, one alarm, an id and two
// stamps; as values (Event), and as the named texts that plans compare and journals keep (Entry). Turns what a file
// says into what a handset can hold, and says what it cannot. Used by the event kind, for the handset's own text and
// for the calendars of files alike.
#pragma once

#include "phnctl/events/rule.h"
#include "phnctl/plan/entry.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace phnctl {

namespace event_property {
inline constexpr const char* kText = "DESCRIPTION";
inline constexpr const char* kStart = "DTSTART";
inline constexpr const char* kEnd = "DTEND";
inline constexpr const char* kZone = "TZID"; // absent: local time
inline constexpr const char* kRule = "RRULE";
inline constexpr const char* kAlarm = "TRIGGER"; // minutes before the start
inline constexpr const char* kRinger = "X-PHN-RINGER-ID";
inline constexpr const char* kUid = "UID";
inline constexpr const char* kOwnUid = "X-PHN-UID"; // in files, where the UID is not the handset's
inline constexpr const char* kCreated = "CREATED";
inline constexpr const char* kModified = "LAST-MODIFIED";
} // namespace event_property

// What a candidate tells beside its entry (Candidate::about).
namespace event_fact {
inline constexpr const char* kSeries = "series";       // the mark of what it is a part of
inline constexpr const char* kVersion = "version";     // a higher one is newer
inline constexpr const char* kCancelled = "cancelled"; // the file takes it back
} // namespace event_fact

// Texts are UTF-8.
struct Event
{
    std::string text;
    std::optional<EventTime> start;
    std::optional<EventTime> end;
    std::string zone; // empty: local time
    EventRule rule;
    std::optional<std::int64_t> alarm; // minutes before the start; negative: after it
    std::optional<std::int64_t> ringer;
    std::string uid;
    std::optional<EventTime> created; // in UTC
    std::optional<EventTime> modified;
};

inline constexpr std::uint64_t kLargestNumber = 0x7FFFFFFF; // that an alarm or a ringer is

// Nothing else reads an event's values from an entry, or writes them into one.
Event EventOf(const Entry& entry);
Entry EntryOf(const Event& event);

// From the first minute of a local day to the last of it or of a later one, or to the midnight behind it.
bool IsAllDay(const Event& event);

// An event as a text states it: its values may be any, and its texts of any length.
struct EventDraft : Event
{
    EventDraft() = default;
    EventDraft(Event values) : Event(std::move(values)) {}

    std::size_t line = 0;                     // of its BEGIN
    std::map<std::string, std::size_t> lines; // where each property is first
    std::vector<EventTime> exceptions;        // occurrences that do not take place
    std::optional<EventTime> before;          // from then on it is another draft's
    std::vector<Note> notes;                  // what was lost on the way here
    std::string problem;                      // not empty: it is no event that a handset could hold
    std::string problemCode = "not-an-event";
    bool isMeant = true; // false: nothing to store, as the problem says
    bool isCancelled = false;
    std::string version; // of a series or a single event; a higher one is newer
    std::string series;  // the mark of what it is a part of; empty: it is no part, and no other is one of it

    // As the file calls the property that is the text.
    const char* TextProperty() const { return lines.contains("SUMMARY") ? "SUMMARY" : event_property::kText; }
    void Tell(const char* code, const std::string& property, std::string words);
};

// An entry of what fits; what does not is noted. `fits` is false when the event cannot be stored: the last note says
// why.
Candidate FitEvent(EventDraft draft);

// The alarms of a handset, in minutes before the start.
std::span<const std::int64_t> AlarmLeads();

// The text of a property or a fact; empty when there is none.
std::string ValueOf(const Entry& entry, const char* property);

// What `wanted` leaves open is that of `replaced`: the stamp of its creation, and the ringer of its alarm.
Entry CompleteEvent(const Entry& wanted, const Entry* replaced);

} // namespace phnctl
