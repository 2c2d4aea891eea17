#include "phnctl/events/file.h"
#include "phnctl/text/content_line.h"
#include "phnctl/text/content_value.h"
#include "phnctl/text/number.h"
#include "phnctl/text/text.h"

namespace phnctl {

using namespace event_property;

namespace {

// The minutes of "-P15M", as the library writes an alarm, or "-PT15M", as everybody does.
std::optional<std::int64_t> LeadOf(const std::string& trigger)
{
    const std::string upper = UpperCase(trigger);
    if (!upper.starts_with("-P") || !upper.ends_with('M'))
        return std::nullopt;
    const std::size_t begin = upper.starts_with("-PT") ? 3 : 2;
    return ParseNumber(std::string_view(upper).substr(begin, upper.size() - begin - 1), kLargestNumber);
}

std::string WithoutBraces(const std::string& uid)
{
    return uid.starts_with('{') && uid.ends_with('}') ? uid.substr(1, uid.size() - 2) : uid;
}

// Reads the events of the library's text and of the tool's own files.
class OwnEventReader
{
public:
    std::vector<EventDraft> Read(std::string_view text)
    {
        ContentLineReader reader(text);
        ContentLine line;
        while (!m_isForeign && reader.Next(line)) {
            const bool isGuessed = IsCharsetGuessed(line);
            line.value = DecodedValue(line);
            Take(line);
            if (isGuessed && m_isInside && !m_isAlarm && (line.name == kText || line.name == "SUMMARY"))
                m_drafts.back().Tell("charset-guessed", line.name, GuessedCharset(m_drafts.back().text));
        }
        if (m_isInside)
            m_drafts.back().problem = "the event has no END:VEVENT";
        else if (m_calendar != 0)
            TellCutOff();
        return std::move(m_drafts);
    }

    // A program that writes calendars names itself; the library does not, and never writes a summary or a duration.
    bool IsForeign() const { return m_isForeign || (m_isLibrary && m_hasForeignProperty); }

private:
    void TellCutOff()
    {
        EventDraft& draft = m_drafts.emplace_back();
        draft.line = m_calendar;
        draft.problemCode = "cut-off";
        draft.problem = "the calendar ends early, without an END: its whole events are read";
    }

    void Take(const ContentLine& line)
    {
        m_hasForeignProperty = m_hasForeignProperty || line.name == "SUMMARY" || line.name == "DURATION";
        if (line.name == "VERSION" && line.value.starts_with("1.")) {
            m_isForeign = true; // vCalendar
        } else if (line.name == "PRODID" && m_isLibrary) {
            m_isLibrary = false;
            m_isForeign = line.value != kCalendarProduct;
        } else if (line.name == "BEGIN" && UpperCase(line.value) == "VEVENT") {
            if (m_isInside)
                m_drafts.back().problem = "the event has no END:VEVENT before the next one begins";
            m_drafts.emplace_back().line = line.line;
            m_isInside = true;
            m_isAlarm = false;
        } else if (line.name == "END" && UpperCase(line.value) == "VEVENT") {
            m_isInside = false;
        } else if (line.name == "BEGIN" || line.name == "END") {
            m_isAlarm = line.name == "BEGIN";
            if (UpperCase(line.value) == "VCALENDAR")
                m_calendar = line.name == "BEGIN" ? line.line : 0;
        } else if (m_isInside && m_isAlarm) {
            TakeAlarm(line, m_drafts.back());
        } else if (m_isInside) {
            TakeProperty(line, m_drafts.back());
        }
    }

    static void TakeAlarm(const ContentLine& line, EventDraft& draft)
    {
        if (line.name == kAlarm) {
            draft.alarm = LeadOf(line.value);
            draft.lines.try_emplace(line.name, line.line);
        } else if (line.name == kRinger || line.HasParameter("TYPE", kRinger)) // the library's is one of ACTION's
            draft.ringer = ParseNumber(line.value, kLargestNumber);
    }

    void TakeProperty(const ContentLine& line, EventDraft& draft) const
    {
        draft.lines.try_emplace(line.name, line.line);
        if (line.name == kText)
            draft.text = line.value;
        else if (line.name == "SUMMARY")
            draft.text = Unescaped(line.value);
        else if (line.name == kStart)
            TakeStart(line, draft);
        else if (line.name == kEnd)
            draft.end = EndOf(line.value);
        else if (line.name == kRule)
            draft.rule = line.value.find("FREQ=") == std::string::npos ? EventRule() : ParseRule(line.value);
        else if (line.name == kUid)
            draft.uid = m_isLibrary ? WithoutBraces(line.value) : Unescaped(line.value);
        else if (line.name == kOwnUid)
            draft.uid = Unescaped(line.value);
        else if (line.name == kCreated)
            draft.created = ParseEventTime(line.value);
        else if (line.name == kModified)
            draft.modified = ParseEventTime(line.value);
    }

    // A date is a whole day; the end of whole days is the day behind them.
    static std::optional<EventTime> EndOf(const std::string& text)
    {
        const auto end = ParseStatedTime(text);
        if (!end)
            return std::nullopt;
        return end->form == StatedTime::Form::Day ? TimeOf(SecondsOf(end->time) - 60) : end->time;
    }

    static void TakeStart(const ContentLine& line, EventDraft& draft)
    {
        const auto start = ParseStatedTime(line.value);
        draft.start.reset();
        if (!start)
            return;
        draft.start = start->time;
        const std::string zone = UpperCase(line.ParameterValue("TZID"));
        draft.zone = HoursBehindUtc(zone) ? zone : start->form == StatedTime::Form::Utc ? kUtcZone : "";
    }

    std::vector<EventDraft> m_drafts;
    std::size_t m_calendar = 0; // the line where the one that has not ended begins
    bool m_isInside = false;
    bool m_isAlarm = false;
    bool m_isLibrary = true; // which escapes nothing, and puts ids into braces
    bool m_isForeign = false;
    bool m_hasForeignProperty = false;
};

struct OwnTexts
{
    std::string uid;
    std::string text;
    std::string rest; // of the calendar
};

// The library writes the handset's texts as they are, also with line ends in them. They stand one behind the other, and
// no text of the handset is behind them: so the last start is the event's, whatever they look like.
OwnTexts TakeOutTexts(const std::string& calendar)
{
    constexpr std::string_view kUidMark = "\r\nUID:{", kTextMark = "\r\nDESCRIPTION:";
    const std::size_t uid = calendar.find(kUidMark);
    const std::size_t uidBegin = uid == std::string::npos ? 0 : uid + kUidMark.size();
    const std::size_t uidEnd = uidBegin == 0 ? 0 : calendar.find("}" + std::string(kTextMark), uidBegin);
    const std::size_t text = calendar.find(kTextMark, uidEnd);
    const std::size_t end = calendar.rfind("\r\nDTSTART");
    if (text == std::string::npos || end == std::string::npos || end < text + kTextMark.size())
        return {"", "", calendar};
    const std::size_t begin = text + kTextMark.size();
    return {calendar.substr(uidBegin, uidEnd - uidBegin), calendar.substr(begin, end - begin),
            calendar.substr(0, uidBegin == 0 ? text : uid) + calendar.substr(end)};
}

} // namespace

std::optional<std::vector<EventDraft>> ReadOwnEvents(std::string_view text)
{
    OwnEventReader reader;
    auto drafts = reader.Read(text);
    return reader.IsForeign() ? std::nullopt : std::optional(std::move(drafts));
}

Entry EventFromLibrary(std::string_view text)
{
    OwnTexts texts = TakeOutTexts(FromHandset(text));
    auto drafts = OwnEventReader().Read(texts.rest);
    if (drafts.empty())
        return {};
    drafts.front().text = texts.text;
    drafts.front().uid = texts.uid;
    Entry entry = FitEvent(std::move(drafts.front())).entry;
    for (EntryField& field : entry.fields)
        if (const std::string& own = field.property == kUid ? texts.uid : texts.text;
            (field.property == kUid || field.property == kText) && HasControls(own))
            field.value = own;
    return entry;
}

} // namespace phnctl
