#include "phnctl/event_file.h"

#include "phnctl/content_line.h"
#include "phnctl/content_value.h"
#include "phnctl/number.h"
#include "phnctl/text.h"

#include <fmt/format.h>
#include <set>

namespace phnctl {

using namespace event_property;

namespace {

constexpr const char* kProduct = "-//phnctl//phnctl//EN";

// The minutes of "-P15M", as the library writes an alarm, or "-PT15M", as everybody does.
std::optional<std::int64_t> LeadOf(const std::string& trigger)
{
    const std::string upper = UpperCase(trigger);
    if (!upper.starts_with("-P") || !upper.ends_with('M'))
        return std::nullopt;
    const std::size_t begin = upper.starts_with("-PT") ? 3 : 2;
    const auto minutes = ParseNumber(std::string_view(upper).substr(begin, upper.size() - begin - 1), 0x7FFFFFFF);
    return minutes ? std::optional<std::int64_t>(*minutes) : std::nullopt;
}

std::string WithoutBraces(const std::string& uid)
{
    return uid.starts_with('{') && uid.ends_with('}') ? uid.substr(1, uid.size() - 2) : uid;
}

// Reads the events of the library's text and of the tool's own files.
class OwnReader
{
public:
    std::vector<EventDraft> Read(std::string_view text)
    {
        ContentLineReader reader(text);
        ContentLine line;
        while (reader.Next(line))
            Take(line);
        if (m_isInside)
            m_drafts.back().problem = "the event has no END:VEVENT";
        return std::move(m_drafts);
    }

private:
    void Take(const ContentLine& line)
    {
        if (line.name == "BEGIN" && UpperCase(line.value) == "VEVENT") {
            if (m_isInside)
                m_drafts.back().problem = "the event has no END:VEVENT before the next one begins";
            m_drafts.emplace_back().line = line.line;
            m_isInside = true;
            m_isAlarm = false;
        } else if (line.name == "END" && UpperCase(line.value) == "VEVENT") {
            m_isInside = false;
        } else if (line.name == "BEGIN" || line.name == "END") {
            m_isAlarm = line.name == "BEGIN";
        } else if (m_isInside && m_isAlarm) {
            TakeAlarm(line, m_drafts.back());
        } else if (m_isInside) {
            TakeProperty(line, m_drafts.back());
        } else if (line.name == "PRODID") {
            m_isLibrary = false;
        }
    }

    static void TakeAlarm(const ContentLine& line, EventDraft& draft)
    {
        if (line.name == kAlarm)
            draft.alarm = LeadOf(line.value);
        else if (line.name == kRinger || line.HasParameter("TYPE", kRinger)) // the library's is one of ACTION's
            draft.ringer = line.value;
    }

    void TakeProperty(const ContentLine& line, EventDraft& draft) const
    {
        if (line.name == kText)
            draft.text = line.value;
        else if (line.name == "SUMMARY")
            draft.text = Unescaped(line.value);
        else if (line.name == kStart)
            TakeStart(line, draft);
        else if (line.name == kEnd)
            draft.end = ParseEventTime(line.value);
        else if (line.name == kRule)
            draft.rule = line.value.find("FREQ=") == std::string::npos ? "" : line.value;
        else if (line.name == kUid)
            draft.uid = m_isLibrary ? WithoutBraces(line.value) : Unescaped(line.value);
        else if (line.name == kCreated)
            draft.created = line.value;
        else if (line.name == kModified)
            draft.modified = line.value;
    }

    static void TakeStart(const ContentLine& line, EventDraft& draft)
    {
        draft.start = ParseEventTime(line.value);
        const std::string zone = UpperCase(line.ParameterValue("TZID"));
        draft.zone = HoursBehindUtc(zone) ? zone : line.value.ends_with('Z') ? kUtcZone : "";
    }

    std::vector<EventDraft> m_drafts;
    bool m_isInside = false;
    bool m_isAlarm = false;
    bool m_isLibrary = true; // which escapes nothing, and puts ids into braces
};

// A program that writes calendars names itself; the library does not, and never writes a summary or a duration.
bool IsForeign(std::string_view text)
{
    ContentLineReader reader(text);
    ContentLine line;
    bool isForeign = false;
    while (reader.Next(line)) {
        if (line.name == "PRODID")
            return line.value != kProduct;
        isForeign = isForeign || line.name == "SUMMARY" || line.name == "DURATION";
    }
    return isForeign;
}

std::vector<EventDraft> ReadEvents(const std::string& text)
{
    std::vector<EventDraft> drafts = IsForeign(text) ? ReadForeignEvents(text) : OwnReader().Read(text);
    if (drafts.empty() && UpperCase(text).find("BEGIN:VCALENDAR") == std::string::npos)
        drafts.emplace_back().problem = "the file holds no calendar";
    return drafts;
}

std::string Value(const Entry& entry, const char* property)
{
    const std::string* value = entry.Find(property);
    return value ? *value : std::string();
}

// "DTSTART;TZID=EST:20090310T120000", without the zone's parameter for local time and UTC.
std::string TimeLine(const Entry& entry, const char* property)
{
    const std::string zone = Value(entry, kZone);
    const bool isUtc = zone == kUtcZone;
    return fmt::format("{}{}:{}{}", property, zone.empty() || isUtc ? "" : ";TZID=" + zone, Value(entry, property),
                       isUtc ? "Z" : "");
}

void AppendZone(std::string& text, const std::string& zone)
{
    const int hours = HoursBehindUtc(zone).value_or(0);
    text += fmt::format("BEGIN:VTIMEZONE\r\nTZID:{0}\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\n"
                        "TZOFFSETFROM:-{1:02}00\r\nTZOFFSETTO:-{1:02}00\r\nTZNAME:{0}\r\nEND:STANDARD\r\n"
                        "END:VTIMEZONE\r\n",
                        zone, hours);
}

void AppendEvent(std::string& text, const StoredEntry& stored)
{
    const Entry& event = stored.entry;
    const std::string uid = Value(event, kUid);
    const std::string modified = Value(event, kModified);
    text += "BEGIN:VEVENT\r\n";
    AppendFolded(text, "UID:" + (uid.empty() ? fmt::format("phnctl-{}", stored.index) : Escaped(uid)));
    AppendFolded(text, fmt::format("DTSTAMP:{}Z", modified.empty() ? "19700101T000000" : modified));
    for (const char* stamp : {kCreated, kModified})
        if (event.Find(stamp))
            AppendFolded(text, fmt::format("{}:{}Z", stamp, Value(event, stamp)));
    AppendFolded(text, TimeLine(event, kStart));
    AppendFolded(text, TimeLine(event, kEnd));
    AppendFolded(text, "SUMMARY:" + Escaped(Value(event, kText)));
    if (const std::string* rule = event.Find(kRule); rule && rule->starts_with("FREQ="))
        AppendFolded(text, "RRULE:" + *rule);
    if (const std::string* lead = event.Find(kAlarm)) {
        text += fmt::format("BEGIN:VALARM\r\nACTION:DISPLAY\r\nDESCRIPTION:Reminder\r\nTRIGGER:-PT{}M\r\n", *lead);
        if (event.Find(kRinger))
            text += fmt::format("{}:{}\r\n", kRinger, Value(event, kRinger));
        text += "END:VALARM\r\n";
    }
    text += "END:VEVENT\r\n";
}

} // namespace

std::vector<Candidate> EventsOfFile(const std::string& file, const std::string& text)
{
    const std::string whole = IsUtf8(text) ? text : FromHandset(text);
    std::vector<Candidate> candidates;
    for (const EventDraft& draft : ReadEvents(whole)) {
        candidates.push_back(FitEvent(draft));
        candidates.back().file = file;
    }
    return candidates;
}

std::string FileOfEvents(std::span<const StoredEntry> events)
{
    std::string text = fmt::format("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:{}\r\n", kProduct);
    std::set<std::string> zones;
    for (const StoredEntry& event : events)
        if (const std::string zone = Value(event.entry, kZone); !zone.empty() && zone != kUtcZone)
            zones.insert(zone);
    for (const std::string& zone : zones)
        AppendZone(text, zone);
    for (const StoredEntry& event : events)
        AppendEvent(text, event);
    return text + "END:VCALENDAR\r\n";
}

Entry EventFromLibrary(std::string_view text)
{
    const auto drafts = OwnReader().Read(FromHandset(text));
    return drafts.empty() ? Entry() : FitEvent(drafts.front()).entry;
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
    text += fmt::format("{}:{}\r\n", kText, Value(event, kText));
    text += TimeLine(event, kStart) + "\r\n" + TimeLine(event, kEnd) + "\r\n";
    add(kRule, "", "");
    if (event.Find(kAlarm)) {
        text += "BEGIN:VALARM\r\n";
        add(kAlarm, "-P", "M");
        if (event.Find(kRinger))
            text += fmt::format("ACTION;{}:{}\r\n", kRinger, Value(event, kRinger));
        text += "END:VALARM\r\n";
    }
    return ToHandset(text + "END:VEVENT\r\nEND:VCALENDAR\r\n");
}

} // namespace phnctl
