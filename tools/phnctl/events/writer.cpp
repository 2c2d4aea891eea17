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
std::string TimeLine(const Entry& entry, const char* property)
{
    const std::string zone = ValueOf(entry, kZone);
    const bool isUtc = zone == kUtcZone;
    return fmt::format("{}{}:{}{}", property, zone.empty() || isUtc ? "" : ";TZID=" + zone, ValueOf(entry, property),
                       isUtc ? "Z" : "");
}

// "DTSTART;VALUE=DATE:20090310".
std::string DayLine(const char* property, const EventTime& time)
{
    return fmt::format("{};VALUE=DATE:{}", property, StatedTimeText({time, StatedTime::Form::Day}));
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
std::string TakeUid(const Entry& event, std::set<std::string>& taken)
{
    std::string uid = ValueOf(event, kUid);
    const std::string begin = uid.empty() ? "phnctl" : uid;
    for (int number = 1; uid.empty() || !taken.insert(uid).second; ++number)
        uid = MarkedUid(begin,
                        fmt::format("{}\n{}\n{}\n{}", begin, ValueOf(event, kStart), ValueOf(event, kText), number));
    return uid;
}

void AppendAlarm(std::string& text, const Entry& event)
{
    const std::string* const lead = event.Find(kAlarm);
    if (!lead)
        return;
    text += fmt::format("BEGIN:VALARM\r\nACTION:DISPLAY\r\nDESCRIPTION:Reminder\r\nTRIGGER:-PT{}M\r\n", *lead);
    if (event.Find(kRinger))
        text += fmt::format("{}:{}\r\n", kRinger, ValueOf(event, kRinger));
    text += "END:VALARM\r\n";
}

void AppendEvent(std::string& text, const Entry& event, const std::string& uid)
{
    const EventDraft values = DraftOf(event);
    const bool isAllDay = IsAllDay(values);
    const std::string modified = ValueOf(event, kModified);
    text += "BEGIN:VEVENT\r\n";
    AppendFolded(text, "UID:" + Escaped(uid));
    if (uid != ValueOf(event, kUid))
        AppendFolded(text, fmt::format("{}:{}", kOwnUid, Escaped(ValueOf(event, kUid))));
    AppendFolded(text, fmt::format("DTSTAMP:{}Z", modified.empty() ? "19700101T000000" : modified));
    for (const char* stamp : {kCreated, kModified})
        if (event.Find(stamp))
            AppendFolded(text, fmt::format("{}:{}Z", stamp, ValueOf(event, stamp)));
    AppendFolded(text, isAllDay ? DayLine(kStart, *values.start) : TimeLine(event, kStart));
    // The end of whole days is the day behind them.
    AppendFolded(text, isAllDay ? DayLine(kEnd, TimeOf(SecondsOf(*values.end) + 60)) : TimeLine(event, kEnd));
    AppendFolded(text, "SUMMARY:" + Escaped(ValueOf(event, kText)));
    if (const std::string rule = RuleText(values.rule, values.zone, isAllDay); !rule.empty())
        AppendFolded(text, "RRULE:" + rule);
    AppendAlarm(text, event);
    text += "END:VEVENT\r\n";
}

} // namespace

std::string FileOfEvents(std::span<const StoredEntry> events)
{
    std::string text = fmt::format("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:{}\r\n", kCalendarProduct);
    std::set<std::string> zones;
    for (const StoredEntry& event : events)
        if (const std::string zone = ValueOf(event.entry, kZone); !zone.empty() && zone != kUtcZone)
            zones.insert(zone);
    for (const std::string& zone : zones)
        AppendZone(text, zone);
    std::set<std::string> uids;
    for (const StoredEntry& event : events)
        AppendEvent(text, event.entry, TakeUid(event.entry, uids));
    return text + "END:VCALENDAR\r\n";
}

std::string EventToLibrary(const Entry& event)
{
    std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\n";
    const auto add = [&](const char* property, const char* before, const char* behind) {
        if (const std::string* value = event.Find(property))
            text += fmt::format("{}:{}{}{}\r\n", property, before, *value, behind);
    };
    add(kCreated, "", "Z");
    add(kModified, "", "Z");
    add(kUid, "{", "}");
    text += fmt::format("{}:{}\r\n", kText, ValueOf(event, kText));
    text += TimeLine(event, kStart) + "\r\n" + TimeLine(event, kEnd) + "\r\n";
    add(kRule, "", "");
    if (event.Find(kAlarm)) {
        text += "BEGIN:VALARM\r\n";
        add(kAlarm, "-P", "M");
        if (event.Find(kRinger))
            text += fmt::format("ACTION;{}:{}\r\n", kRinger, ValueOf(event, kRinger));
        text += "END:VALARM\r\n";
    }
    return ToHandset(text + "END:VEVENT\r\nEND:VCALENDAR\r\n");
}

} // namespace phnctl
