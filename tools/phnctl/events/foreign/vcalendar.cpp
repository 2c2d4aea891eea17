#include "phnctl/events/foreign/vcalendar.h"

#include "phnctl/text/content_value.h"
#include "phnctl/text/number.h"

#include <algorithm>
#include <fmt/format.h>
#include <set>
#include <span>

namespace phnctl {

namespace {

bool IsIn(std::string_view name, std::span<const std::string_view> names)
{
    return std::ranges::find(names, name) != names.end();
}

// What has other values there, and means nothing to a handset.
constexpr std::string_view kSilent[] = {"STATUS", "TRANSP", "PRIORITY", "CLASS", "RNUM"};
constexpr std::string_view kTimes[] = {"DTSTART", "DTEND", "EXDATE", "RDATE"};
constexpr std::string_view kTexts[] = {"SUMMARY", "DESCRIPTION", "LOCATION", "UID"};
constexpr std::string_view kAlarms[] = {"AALARM", "DALARM", "PALARM", "MALARM"};

ContentLine Line(std::size_t line, const char* name, std::string value)
{
    return {line, "", name, {}, std::move(value)};
}

// "-05", "+0530" or "+05:30" as "-0500", "+0530".
std::optional<std::string> OffsetOf(std::string text)
{
    std::erase(text, ':');
    const bool isSigned = text.starts_with('-') || text.starts_with('+');
    const std::string digits = text.substr(isSigned);
    const auto number = ParseNumber(digits, 1400);
    if (!number || digits.empty() || digits.size() > 4 || digits.starts_with("0x"))
        return std::nullopt;
    return fmt::format("{}{:04}", text.starts_with('-') ? '-' : '+', digits.size() > 2 ? *number : *number * 100);
}

} // namespace

std::vector<ContentLine> VCalendarReader::Take(ContentLine line)
{
    if (line.name == "VERSION" && !m_isInEvent)
        m_isVersion1 = line.value.starts_with("1.0");
    if (line.name == "BEGIN" || line.name == "END")
        return TakeMark(std::move(line));
    if (!m_isVersion1)
        return {std::move(line)};
    if (line.name == "TZ")
        m_zone = OffsetOf(line.value).value_or("");
    else if (line.name == "DAYLIGHT")
        m_daylight.push_back(std::move(line));
    else
        return TakeProperty(std::move(line));
    return {};
}

std::vector<ContentLine> VCalendarReader::TakeMark(ContentLine line)
{
    const std::string kind = UpperCase(line.value);
    const bool isBegin = line.name == "BEGIN";
    std::vector<ContentLine> lines;
    if (kind.starts_with("VCALENDAR")) {
        *this = {};
    } else if (m_isVersion1 && kind.starts_with("VEVENT")) {
        m_isInEvent = isBegin;
        lines = isBegin ? Zone(line.line) : Alarms();
        m_isZoneDefined = m_isZoneDefined || !lines.empty();
        m_start.reset();
        m_alarms.clear();
    }
    lines.push_back(std::move(line));
    return lines;
}

std::vector<ContentLine> VCalendarReader::TakeProperty(ContentLine line)
{
    if (line.name == "DCREATED")
        line.name = "CREATED";
    if (IsIn(line.name, kSilent))
        return {};
    if (IsIn(line.name, kAlarms)) {
        TakeAlarm(line);
        return {};
    }
    if (line.name == "RRULE")
        line.value = RuleOfVCalendar(line.value);
    if (IsIn(line.name, kTexts)) {
        // Its own marks of encoding and character set are done with here; a guess is still to be seen.
        const std::string value = Escaped(Unescaped(DecodedValue(line)));
        if (!IsCharsetGuessed(line))
            line = {line.line, "", line.name, {}, value};
    }
    if (!IsIn(line.name, kTimes))
        return {std::move(line)};
    std::ranges::replace(line.value, ';', ',');
    const auto time = ParseStatedTime(line.value);
    line.parameters.clear();
    if (line.name == "DTSTART")
        m_start = time;
    if (time && time->form == StatedTime::Form::Day)
        line.parameters.push_back({"VALUE", "DATE"});
    else if (m_isZoneDefined && !line.value.ends_with('Z'))
        line.parameters.push_back({"TZID", "TZ" + m_zone});
    return {std::move(line)};
}

void VCalendarReader::TakeAlarm(const ContentLine& line)
{
    const std::string time = line.value.substr(0, line.value.find(';'));
    if (const auto stated = ParseStatedTime(time))
        m_alarms.push_back({line, stated->time});
}

// The zone that the calendar describes, the first time that it is asked for.
std::vector<ContentLine> VCalendarReader::Zone(std::size_t line) const
{
    if (m_isZoneDefined || m_zone.empty() || m_daylight.empty())
        return {};
    std::vector<ContentLine> lines;
    const auto add = [&](const char* name, const std::string& value) { lines.push_back(Line(line, name, value)); };
    const auto addClock = [&](const char* kind, const std::string& since, const std::string& from,
                              const std::string& to) {
        add("BEGIN", kind);
        add("DTSTART", since);
        add("TZOFFSETFROM", from);
        add("TZOFFSETTO", to);
        add("END", kind);
    };
    add("BEGIN", "VTIMEZONE");
    add("TZID", "TZ" + m_zone);
    addClock("STANDARD", "19700101T000000", m_zone, m_zone);
    for (const ContentLine& daylight : m_daylight) {
        const std::vector<std::string> parts = SplitEscaped(daylight.value, ';'); // TRUE, offset, first, end
        const auto offset = parts.size() < 4 ? std::nullopt : OffsetOf(parts[1]);
        const auto begin = offset ? ParseEventTime(parts[2]) : std::nullopt;
        const auto end = offset ? ParseEventTime(parts[3]) : std::nullopt;
        if (!begin || !end)
            continue;
        addClock("DAYLIGHT", EventTimeText(*begin), m_zone, *offset);
        addClock("STANDARD", EventTimeText(*end), *offset, m_zone);
    }
    add("END", "VTIMEZONE");
    return lines;
}

// At a distance from the start, each distance once: many give the sound and the text of one alarm.
std::vector<ContentLine> VCalendarReader::Alarms() const
{
    std::vector<ContentLine> lines;
    std::set<std::int64_t> leads;
    for (const Alarm& alarm : m_alarms) {
        if (!m_start)
            break;
        const std::int64_t lead = SecondsOf(m_start->time) - SecondsOf(alarm.time);
        if (!leads.insert(lead).second)
            continue;
        const auto add = [&](const char* name, const std::string& value) {
            lines.push_back(Line(alarm.line.line, name, value));
        };
        add("BEGIN", "VALARM");
        add("ACTION", alarm.line.name == "MALARM" ? "EMAIL" : "AUDIO");
        add("TRIGGER", fmt::format("{}PT{}S", lead < 0 ? "" : "-", lead < 0 ? -lead : lead));
        add("END", "VALARM");
    }
    return lines;
}

} // namespace phnctl
