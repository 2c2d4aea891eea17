// Reads the library's iCalendar dialect: components, a tolerant property reader, and the pure steps that turn values
// into fields. Nothing here logs, allocates or knows the handset's records; texts are views into the host's text, which
// is hostile. The work is linear in the text, whatever its bytes.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "calendar/local_time.h"

// The properties of events and alarms. Names that begin with the same letter stand together.
enum EiCalKey
{
    eKeyAction,
    eKeyCreated,
    eKeyDescription,
    eKeyDtEnd,
    eKeyDtStart,
    eKeyLastModified,
    eKeyRRule,
    eKeyTrigger,
    eKeyUID,
    eKeyCount
};

inline constexpr std::string_view kiCalKeys[eKeyCount] = {"ACTION",        "CREATED", "DESCRIPTION", "DTEND", "DTSTART",
                                                          "LAST-MODIFIED", "RRULE",   "TRIGGER",     "UID"};

// The longest value that is read, in characters, where no shorter limit holds.
inline constexpr size_t kMaxValue = 259;

// What an event's text states: views into it. What is absent was not there, or its value was too long.
struct ICAL_PROPERTIES
{
    std::string_view strDescription;
    std::string_view strStart;
    std::string_view strEnd;
    std::optional<std::string_view> strTimeZone;
    std::optional<std::string_view> strCreated;
    std::optional<std::string_view> strModified;
    std::string_view strUID;
    std::optional<std::string_view> strTriggerMinutes;
    std::optional<std::string_view> strRingerID;
    std::string_view strFrequency; // of the recurrence; this and the next are its parts
    std::optional<std::string_view> strByDay;
    std::optional<std::string_view> strByMonthDay;
    std::optional<std::string_view> strByMonth;
    std::optional<std::string_view> strInterval;
    std::optional<std::string_view> strCount;
    std::optional<std::string_view> strUntil;
};

// What stands between the first BEGIN of a component and the END that follows it; none if either is missing.
std::optional<std::string_view> GetiCalComponent(std::string_view strText, std::string_view strName);

// An event's or an alarm's text, in which the first line of every property has been found.
class CiCalText
{
public:
    explicit CiCalText(std::string_view strText);

    // The value of the first line that begins with the name. It starts behind the first delimiter that follows the
    // name, wherever that is: ':' for a property's value, ';' for its parameters and the value. It ends with its line;
    // if no line end follows, at the first delimiter of any kind, or with the text. None if the name or the delimiter
    // is missing, if the name of that line goes on with a letter or a digit, or if the value has more than uMaxValue
    // characters.
    std::optional<std::string_view> GetiCalProperty(EiCalKey eKey, char cDelimiter, size_t uMaxValue = kMaxValue) const;

private:
    std::string_view m_strText;
    std::array<size_t, eKeyCount> m_auPositions;
};

// The same for the VERSION of a calendar.
std::optional<std::string_view> GetVersion(std::string_view strCalendar);

// The same for a name that a value of one line begins with.
std::optional<std::string_view> GetLeadingProperty(std::string_view strValue, std::string_view strName, char cDelimiter,
                                                   size_t uMaxValue);

// A parameter, NAME=value, anywhere in a value of one line. Its value ends at the next ';' or '='. Only the first
// occurrence of the name is looked at: none if it is part of a longer word, or if the value is too long.
std::optional<std::string_view> GetiCalParameter(std::string_view strValue, std::string_view strName, size_t uMaxValue);

// What follows the first ';' of an event's recurrence rule, behind FREQ; empty if there is none.
std::string_view GetRestOfRule(const CiCalText& Event);

// The text between the braces, if there are any.
std::string_view GetBareUID(std::string_view strUID);

// The minutes of a TRIGGER: the text between the P that follows a '-' and the last M. None if one of them is missing.
std::optional<std::string_view> GetTriggerMinutes(std::string_view strTrigger);

// A date-time of at least 15 characters, as 20090315T120000Z, 2009-03-15T12:00:00 or 2009/03/15T12-00-00.
std::optional<SCalDate> ParseiCalDate(std::string_view strValue);

bool CheckDateRange(const SCalDate& Date);
