#include "phnctl/events/file.h"
#include "phnctl/events/uid.h"
#include "phnctl/text/content_line.h"
#include "phnctl/text/content_value.h"
#include "phnctl/text/text.h"

#include <fmt/format.h>
#include <set>

namespace phnctl {

using namespace event_property;

namespace {

// "DTSTART;TZID=EST:20090310T120000", without the zone's parameter for local time and UTC.
std::string TimeLine(const char* property, const std::optional<EventTime>& time, const std::string& zone)
{
    const bool isUtc = zone == kUtcZone;
    return fmt::format("{}{}:{}{}\r\n", property, zone.empty() || isUtc ? "" : ";TZID=" + zone, EventTimeText(time),
                       isUtc ? "Z" : "");
}

// "DTSTART;VALUE=DATE:20090310".
std::string DayLine(const char* property, const EventTime& time)
{
    return fmt::format("{};VALUE=DATE:{}\r\n", property, StatedTimeText({time, StatedTime::Form::Day}));
}

std::string StampLines(const Event& event)
{
    return (event.created ? TimeLine(kCreated, event.created, kUtcZone) : "") +
           (event.modified ? TimeLine(kModified, event.modified, kUtcZone) : "");
}

// The end is a time such as the start: a date, local, or UTC for all else. Empty if a handset does not repeat by it.
std::string RuleText(EventRule rule, const std::string& zone, bool isAllDay)
{
    if (!rule.problem.empty())
        return {};
    if (zone.empty())
        rule.EndInOwnTime("");
    if (isAllDay && rule.until)
        rule.until->form = StatedTime::Form::Day;
    return rule.Text();
}

void AppendZone(std::string& text, const std::string& zone)
{
    const int hours = HoursBehindUtc(zone).value_or(0);
    text += fmt::format("BEGIN:VTIMEZONE\r\nTZID:{0}\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\n"
                        "TZOFFSETFROM:-{1:02}00\r\nTZOFFSETTO:-{1:02}00\r\nTZNAME:{0}\r\nEND:STANDARD\r\n"
                        "END:VTIMEZONE\r\n",
                        zone, hours);
}

// No two events of a file have the same id. Whoever has none of its own gets one by what it is.
std::string TakeUid(const Event& event, std::set<std::string>& taken)
{
    std::string uid = event.uid;
    const std::string begin = uid.empty() ? "phnctl" : uid;
    for (int number = 1; uid.empty() || !taken.insert(uid).second; ++number)
        uid = MarkedUid(begin, fmt::format("{}\n{}\n{}\n{}", begin, EventTimeText(event.start), event.text, number));
    return uid;
}

void AppendAlarm(std::string& text, const Event& event)
{
    if (!event.alarm)
        return;
    text += fmt::format("BEGIN:VALARM\r\nACTION:DISPLAY\r\nDESCRIPTION:Reminder\r\nTRIGGER:-PT{}M\r\n", *event.alarm);
    if (event.ringer)
        text += fmt::format("{}:{}\r\n", kRinger, *event.ringer);
    text += "END:VALARM\r\n";
}

void AppendEvent(std::string& text, const Event& event, const std::string& uid)
{
    const bool isAllDay = IsAllDay(event);
    text += "BEGIN:VEVENT\r\n";
    AppendFolded(text, "UID:" + Escaped(uid));
    if (uid != event.uid)
        AppendFolded(text, fmt::format("{}:{}", kOwnUid, Escaped(event.uid)));
    text += TimeLine("DTSTAMP", event.modified ? event.modified : EventTime{1970, 1, 1}, kUtcZone);
    text += StampLines(event);
    text += isAllDay ? DayLine(kStart, *event.start) : TimeLine(kStart, event.start, event.zone);
    // The end of whole days is the day behind them.
    text += isAllDay ? DayLine(kEnd, TimeOf(SecondsOf(*event.end) + 60)) : TimeLine(kEnd, event.end, event.zone);
    AppendFolded(text, "SUMMARY:" + Escaped(event.text));
    if (const std::string rule = RuleText(event.rule, event.zone, isAllDay); !rule.empty())
        AppendFolded(text, "RRULE:" + rule);
    AppendAlarm(text, event);
    text += "END:VEVENT\r\n";
}

} // namespace

std::string FileOfEvents(std::span<const StoredEntry> entries)
{
    std::vector<Event> events;
    for (const StoredEntry& stored : entries)
        events.push_back(EventOf(stored.entry));
    std::string text = fmt::format("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:{}\r\n", kCalendarProduct);
    std::set<std::string> zones;
    for (const Event& event : events)
        if (!event.zone.empty() && event.zone != kUtcZone)
            zones.insert(event.zone);
    for (const std::string& zone : zones)
        AppendZone(text, zone);
    std::set<std::string> uids;
    for (const Event& event : events)
        AppendEvent(text, event, TakeUid(event, uids));
    return text + "END:VCALENDAR\r\n";
}

std::string EventToLibrary(const Entry& entry)
{
    const Event event = EventOf(entry);
    std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\n" + StampLines(event);
    if (!event.uid.empty())
        text += fmt::format("{}:{{{}}}\r\n", kUid, event.uid);
    text += fmt::format("{}:{}\r\n", kText, event.text);
    text += TimeLine(kStart, event.start, event.zone) + TimeLine(kEnd, event.end, event.zone);
    if (event.rule.Repeats())
        text += fmt::format("{}:{}\r\n", kRule, event.rule.written);
    if (event.alarm) {
        text += fmt::format("BEGIN:VALARM\r\n{}:-P{}M\r\n", kAlarm, *event.alarm);
        if (event.ringer)
            text += fmt::format("ACTION;{}:{}\r\n", kRinger, *event.ringer);
        text += "END:VALARM\r\n";
    }
    return ToHandset(text + "END:VEVENT\r\nEND:VCALENDAR\r\n");
}

} // namespace phnctl
