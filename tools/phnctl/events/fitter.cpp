#include "phnctl/events/event.h"
#include "phnctl/events/uid.h"
#include "phnctl/events/words.h"
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
            m_held.created = InRange(m_draft.created);
            m_held.modified = InRange(m_draft.modified);
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
        m_held.text = cut;
    }

    bool TakeTimes()
    {
        if (!m_draft.start || !m_draft.end) {
            Refuse("no-time", m_draft.start ? kEnd : kStart, "it is no date and time");
            return false;
        }
        m_held.start = m_draft.start;
        m_held.end = m_draft.end;
        m_held.zone = m_draft.zone;
        m_isAllDay = IsAllDay(m_held);
        EventTime& end = *m_held.end;
        if (m_isAllDay) // their end is always written as the last minute
            end = TimeOf(SecondsOf(end) - (end.hour == 0 ? 60 : end.second));
        const auto isInRange = [](const EventTime& time) { return time.year >= kFirstYear && time.year <= kLastYear; };
        if (!isInRange(*m_held.start) || !isInRange(end))
            Refuse("date-out-of-range", kStart,
                   fmt::format("the handset keeps dates from {} to {}", kFirstYear, kLastYear));
        else if (end < *m_held.start)
            Refuse("ends-before-it-starts", kEnd, "the event ends before it starts");
        return true;
    }

    void TakeRule()
    {
        EventRule& rule = m_held.rule = m_draft.rule;
        rule.written = OneLine(rule.written);
        if (!rule.problem.empty())
            return Refuse("rule", kRule, fmt::format("the handset cannot repeat an event by '{}'", rule.problem));
        if (rule.Repeats() && !rule.Lists(*m_held.start)) {
            rule.problem = rule.written; // as it is, so that it is not taken for what happens once
            return Refuse("start-not-in-rule", kRule, "the start is none of the days that the rule lists");
        }
        if (m_isAllDay && rule.until) { // any time of the last day means that day
            rule.EndInOwnTime("");
            rule.until->form = StatedTime::Form::Day;
        }
        rule.EndInUtc(m_held.zone);
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
        m_held.alarm = held;
        m_held.ringer = m_draft.ringer;
    }

    void TakeUid()
    {
        const std::string uid = OneLine(m_draft.uid);
        const bool isHeld = CutToUnits(uid, kUidUnits) == uid && TryToHandset(uid);
        m_held.uid = isHeld ? uid : MarkedUid(uid, uid);
        if (!isHeld)
            m_draft.Tell("uid-shortened", kUid, fmt::format("the handset keeps it as '{}'", m_held.uid));
    }

    static std::optional<EventTime> InRange(const std::optional<EventTime>& stamp)
    {
        return stamp && stamp->year >= kFirstYear ? stamp : std::nullopt;
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
        m_result.entry = EntryOf(m_held);
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
    Event m_held;
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
