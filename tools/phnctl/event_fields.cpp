#include "phnctl/event_fields.h"

#include "phnctl/event_rule.h"
#include "phnctl/number.h"
#include "phnctl/text.h"

#include <algorithm>
#include <chrono>
#include <fmt/format.h>
#include <iterator>

namespace phnctl {

using namespace event_property;

namespace {

constexpr std::size_t kTextUnits = 80;
constexpr std::size_t kUidUnits = 40;
constexpr int kFirstYear = 1981;
constexpr int kLastYear = 2037;
constexpr std::int64_t kLeads[] = {0, 5, 10, 15, 60, 120, 1440, 2880}; // minutes
constexpr const char* kNoRinger = "255";

// The same short id for the same long one, and another for every other.
std::string ShortUid(const std::string& uid)
{
    std::uint64_t hash = 0xCBF29CE484222325; // FNV-1a
    for (const char c : uid)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    std::string begin = CutToUnits(uid, kUidUnits - 17);
    if (!TryToHandset(begin))
        begin.clear();
    return fmt::format("{}~{:016x}", begin, hash);
}

bool Holds(const std::vector<int>& numbers, int fromFront, int fromEnd)
{
    return numbers.empty() ||
           std::ranges::any_of(numbers, [&](int number) { return number == fromFront || number == fromEnd; });
}

// Is the start one of the days that the rule lists?
bool Lists(const EventRule& rule, const EventTime& start)
{
    using namespace std::chrono;
    const year_month_day date(year(start.year), month(start.month), day(start.day));
    const auto length =
        static_cast<int>(static_cast<unsigned>(year_month_day_last(date.year(), month_day_last(date.month())).day()));
    const auto today = static_cast<int>(start.day);
    const auto weekdayIndex = static_cast<int>(weekday(sys_days(date)).iso_encoding()) - 1;
    const bool isDay = rule.days.empty() || std::ranges::any_of(rule.days, [&](const EventRule::Day& listed) {
                           return listed.day == weekdayIndex && (listed.week == 0 || listed.week == (today + 6) / 7 ||
                                                                 listed.week == -((length - today + 7) / 7));
                       });
    return isDay && Holds(rule.months, static_cast<int>(start.month), 0) &&
           Holds(rule.monthDays, today, today - length - 1);
}

class EventFitter
{
public:
    explicit EventFitter(const EventDraft& draft) : m_draft(draft)
    {
        m_result.line = draft.line;
        m_result.notes = draft.notes;
    }

    Candidate Fit()
    {
        if (!m_draft.problem.empty())
            Refuse("not-an-event", "", m_draft.problem);
        else if (TakeTimes()) {
            TakeText();
            TakeRule();
            TakeAlarm();
            TakeUid();
            TakeStamp(kCreated, m_draft.created);
            TakeStamp(kModified, m_draft.modified);
        }
        return Finish();
    }

private:
    bool TakeTimes()
    {
        if (!m_draft.start || !m_draft.end) {
            Refuse("no-time", m_draft.start ? kEnd : kStart, "it is no date and time");
            return false;
        }
        const auto isInRange = [](const EventTime& time) { return time.year >= kFirstYear && time.year <= kLastYear; };
        if (!isInRange(*m_draft.start) || !isInRange(*m_draft.end)) {
            Refuse("date-out-of-range", kStart,
                   fmt::format("the handset keeps dates from {} to {}", kFirstYear, kLastYear));
            return false;
        }
        if (*m_draft.end < *m_draft.start) {
            Refuse("ends-before-it-starts", kEnd, "the event ends before it starts");
            return false;
        }
        return true;
    }

    void TakeText()
    {
        const std::string text = OneLine(m_draft.text);
        const std::string cut = OneLine(CutToUnits(text, kTextUnits));
        if (cut != text)
            Tell("text-cut", kText, fmt::format("cut to '{}': the handset keeps {} characters", cut, kTextUnits));
        if (!TryToHandset(cut))
            Refuse("no-place-in-code-page", kText,
                   fmt::format("'{}' holds characters that have no place in the handset library's code page", cut));
        Add(kText, cut);
        Add(kStart, EventTimeText(*m_draft.start));
        Add(kEnd, EventTimeText(*m_draft.end));
        Add(kZone, m_draft.zone);
    }

    void TakeRule()
    {
        EventRule rule;
        std::string problem;
        if (m_draft.rule.empty())
            return;
        if (!rule.Parse(m_draft.rule, problem))
            return Refuse("rule", kRule, fmt::format("the handset cannot repeat an event by '{}'", problem));
        if (!rule.frequency.empty() && !Lists(rule, *m_draft.start))
            return Refuse("start-not-in-rule", kRule, "the start is none of the days that the rule lists");
        Add(kRule, rule.Text());
    }

    void TakeAlarm()
    {
        if (!m_draft.alarm)
            return;
        const auto* const lead = std::ranges::lower_bound(kLeads, *m_draft.alarm);
        const std::int64_t held = lead == std::end(kLeads) ? kLeads[std::size(kLeads) - 1] : *lead;
        if (held != *m_draft.alarm)
            Tell("alarm-moved", kAlarm,
                 fmt::format("{} minutes before the start become {}, the {} that the handset has", *m_draft.alarm, held,
                             held > *m_draft.alarm ? "next earlier" : "earliest"));
        Add(kAlarm, std::to_string(held));
        const auto ringer = ParseNumber(m_draft.ringer, 0x7FFFFFFF);
        if (ringer)
            Add(kRinger, std::to_string(*ringer));
    }

    void TakeUid()
    {
        const std::string uid = OneLine(m_draft.uid);
        const bool isHeld = CutToUnits(uid, kUidUnits) == uid && TryToHandset(uid);
        const std::string held = isHeld ? uid : ShortUid(uid);
        if (!isHeld)
            Tell("uid-shortened", kUid, fmt::format("the handset keeps it as '{}'", held));
        Add(kUid, held);
    }

    void TakeStamp(const char* property, const std::string& stamp)
    {
        const auto time = ParseEventTime(stamp);
        if (time && time->year >= kFirstYear)
            Add(property, EventTimeText(*time));
    }

    // An empty value is the same as none.
    void Add(const char* property, const std::string& value)
    {
        if (!value.empty())
            m_result.entry.fields.push_back({property, value});
    }

    void Tell(const char* code, const char* property, std::string text)
    {
        m_result.notes.push_back({code, property, 0, std::move(text)});
    }

    // The reason comes last, whatever else there is to say.
    void Refuse(const char* code, const char* property, std::string text)
    {
        m_refusal = Note{code, property, 0, std::move(text)};
    }

    Candidate Finish()
    {
        m_result.fits = !m_refusal;
        if (m_refusal)
            m_result.notes.push_back(*m_refusal);
        return std::move(m_result);
    }

    const EventDraft& m_draft;
    Candidate m_result;
    std::optional<Note> m_refusal;
};

std::string ValueOf(const Entry& entry, const char* property)
{
    const std::string* value = entry.Find(property);
    return value ? *value : std::string();
}

} // namespace

Candidate FitEvent(const EventDraft& draft)
{
    return EventFitter(draft).Fit();
}

EventDraft DraftOf(const Entry& entry)
{
    EventDraft draft;
    draft.text = ValueOf(entry, kText);
    draft.start = ParseEventTime(ValueOf(entry, kStart));
    draft.end = ParseEventTime(ValueOf(entry, kEnd));
    draft.zone = ValueOf(entry, kZone);
    draft.rule = ValueOf(entry, kRule);
    if (const auto alarm = ParseNumber(ValueOf(entry, kAlarm), 0x7FFFFFFF))
        draft.alarm = static_cast<std::int64_t>(*alarm);
    draft.ringer = ValueOf(entry, kRinger);
    draft.uid = ValueOf(entry, kUid);
    draft.created = ValueOf(entry, kCreated);
    draft.modified = ValueOf(entry, kModified);
    return draft;
}

Entry CompleteEvent(const Entry& wanted, const Entry* replaced)
{
    const auto chosen = [&](const char* property, const char* otherwise) {
        const std::string own = ValueOf(wanted, property);
        const std::string old = own.empty() && replaced ? ValueOf(*replaced, property) : own;
        return old.empty() ? std::string(otherwise) : old;
    };
    Entry entry;
    const auto add = [&](const char* property, const std::string& value) {
        if (!value.empty())
            entry.fields.push_back({property, value});
    };
    for (const char* property : {kText, kStart, kEnd, kZone, kRule, kAlarm})
        add(property, ValueOf(wanted, property));
    if (wanted.Find(kAlarm))
        add(kRinger, chosen(kRinger, kNoRinger));
    add(kUid, chosen(kUid, ""));
    add(kCreated, chosen(kCreated, ""));
    add(kModified, ValueOf(wanted, kModified));
    return entry;
}

} // namespace phnctl
