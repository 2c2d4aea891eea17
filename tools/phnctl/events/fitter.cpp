#include "phnctl/events/event.h"
#include "phnctl/events/uid.h"
#include "phnctl/events/words.h"
#include "phnctl/text/number.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>

namespace phnctl {

using namespace event_property;

namespace {

constexpr std::size_t kTextUnits = 80;
constexpr std::int64_t kLeads[] = {0, 5, 10, 15, 60, 120, 1440, 2880}; // minutes

class EventFitter
{
public:
    explicit EventFitter(EventDraft draft) : m_draft(std::move(draft)) {}

    // What is known of it is told also where it cannot be held: people find it by its text.
    Candidate Fit()
    {
        TakeText();
        if (!m_draft.problem.empty())
            Refuse(m_draft.problemCode, "", m_draft.problem);
        else if (TakeTimes()) {
            TakeRule();
            TakeAlarm();
            TakeStamp(kCreated, m_draft.created);
            TakeStamp(kModified, m_draft.modified);
        }
        TakeUid();
        return Finish();
    }

private:
    void TakeText()
    {
        const std::string text = OneLine(m_draft.text);
        const std::string cut = OneLine(CutToUnits(text, kTextUnits));
        if (cut != text)
            m_draft.Tell("text-cut", m_draft.TextProperty(),
                         fmt::format("cut to '{}': the handset keeps {} characters", cut, kTextUnits));
        if (!TryToHandset(cut))
            Refuse("no-place-in-code-page", m_draft.TextProperty(),
                   fmt::format("'{}' holds characters that have no place in the handset library's code page", cut));
        Add(kText, cut);
    }

    bool TakeTimes()
    {
        if (!m_draft.start || !m_draft.end) {
            Refuse("no-time", m_draft.start ? kEnd : kStart, "it is no date and time");
            return false;
        }
        EventTime& end = *m_draft.end;
        m_isAllDay = IsAllDay(m_draft);
        if (m_isAllDay) // their end is always written as the last minute
            end = TimeOf(SecondsOf(end) - (end.hour == 0 ? 60 : end.second));
        const auto isInRange = [](const EventTime& time) { return time.year >= kFirstYear && time.year <= kLastYear; };
        if (!isInRange(*m_draft.start) || !isInRange(end))
            Refuse("date-out-of-range", kStart,
                   fmt::format("the handset keeps dates from {} to {}", kFirstYear, kLastYear));
        else if (end < *m_draft.start)
            Refuse("ends-before-it-starts", kEnd, "the event ends before it starts");
        Add(kStart, EventTimeText(*m_draft.start));
        Add(kEnd, EventTimeText(end));
        Add(kZone, m_draft.zone);
        return true;
    }

    void TakeRule()
    {
        EventRule& rule = m_draft.rule;
        const bool isListed = !rule.Repeats() || rule.Lists(*m_draft.start);
        if (!rule.problem.empty() || !isListed)
            Add(kRule, OneLine(rule.written)); // so that it is not taken for what happens once
        if (!rule.problem.empty())
            return Refuse("rule", kRule, fmt::format("the handset cannot repeat an event by '{}'", rule.problem));
        if (!isListed)
            return Refuse("start-not-in-rule", kRule, "the start is none of the days that the rule lists");
        if (m_isAllDay && rule.until) { // any time of the last day means that day
            rule.EndInOwnTime("");
            rule.until->form = StatedTime::Form::Day;
        }
        rule.EndInUtc(m_draft.zone);
        Add(kRule, rule.Text());
    }

    void TakeAlarm()
    {
        if (!m_draft.alarm)
            return;
        const std::int64_t asked = *m_draft.alarm;
        const auto* const lead = std::ranges::lower_bound(kLeads, asked);
        const std::int64_t held = lead == std::end(kLeads) ? kLeads[std::size(kLeads) - 1] : *lead;
        if (held != asked)
            m_draft.Tell("alarm-moved", kAlarm,
                         fmt::format("it rings {} instead of {}: the handset {}", LeadInWords(held), LeadInWords(asked),
                                     asked < 0      ? "has no alarm after the start"
                                     : held < asked ? "has no earlier alarm"
                                                    : "has none between"));
        Add(kAlarm, std::to_string(held));
        const auto ringer = ParseNumber(m_draft.ringer, 0x7FFFFFFF);
        if (ringer)
            Add(kRinger, std::to_string(*ringer));
    }

    void TakeUid()
    {
        const std::string uid = OneLine(m_draft.uid);
        const bool isHeld = CutToUnits(uid, kUidUnits) == uid && TryToHandset(uid);
        const std::string held = isHeld ? uid : MarkedUid(uid, uid);
        if (!isHeld)
            m_draft.Tell("uid-shortened", kUid, fmt::format("the handset keeps it as '{}'", held));
        Add(kUid, held);
    }

    void TakeStamp(const char* property, const std::optional<EventTime>& time)
    {
        if (time && time->year >= kFirstYear)
            Add(property, EventTimeText(*time));
    }

    // An empty value is the same as none.
    void Add(const char* property, const std::string& value)
    {
        if (!value.empty())
            m_result.entry.fields.push_back({property, value});
    }

    void AddFact(const char* fact, const std::string& value)
    {
        if (!value.empty())
            m_result.about.fields.push_back({fact, value});
    }

    // The reason comes last, whatever else there is to say. The first one counts.
    void Refuse(const std::string& code, const char* property, std::string text)
    {
        if (m_refusal)
            return;
        const auto found = m_draft.lines.find(property);
        m_refusal = Note{code, property, found == m_draft.lines.end() ? 0 : found->second, std::move(text)};
    }

    Candidate Finish()
    {
        m_result.line = m_draft.line;
        m_result.notes = std::move(m_draft.notes);
        m_result.fits = !m_refusal;
        m_result.isMeant = m_draft.isMeant;
        AddFact(event_fact::kSeries, m_draft.series);
        AddFact(event_fact::kVersion, m_draft.version);
        AddFact(event_fact::kCancelled, m_draft.isCancelled ? "yes" : "");
        if (m_refusal)
            m_result.notes.push_back(*m_refusal);
        return std::move(m_result);
    }

    EventDraft m_draft;
    Candidate m_result;
    bool m_isAllDay = false;
    std::optional<Note> m_refusal;
};

} // namespace

std::span<const std::int64_t> AlarmLeads()
{
    return kLeads;
}

Candidate FitEvent(EventDraft draft)
{
    return EventFitter(std::move(draft)).Fit();
}

} // namespace phnctl
