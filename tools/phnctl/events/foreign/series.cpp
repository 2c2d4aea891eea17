#include "phnctl/events/file.h"
#include "phnctl/events/foreign/reading.h"
#include "phnctl/events/uid.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace phnctl {

using namespace event_property;

namespace {

constexpr std::size_t kMostPieces = 20;
constexpr int kFirstOften = 1900; // searching a daily rule from long ago takes long
constexpr std::size_t kAll = static_cast<std::size_t>(-1);
constexpr EventTime kFirst{kFirstYear, 1, 1};
constexpr EventTime kLast{kLastYear, 12, 31, 23, 59, 59};

class Series
{
public:
    explicit Series(EventDraft draft)
        : m_draft(std::move(draft)), m_length(SecondsOf(*m_draft.end) - SecondsOf(*m_draft.start))
    {
    }

    std::vector<EventDraft> Pieces()
    {
        if (m_draft.start->year < kFirstYear)
            Begin();
        if (m_draft.start->year < kFirstYear)
            return {m_draft};
        std::vector<EventDraft> pieces;
        if (m_draft.rule.Lists(*m_draft.start) || PartStart(pieces))
            std::ranges::move(Runs(), std::back_inserter(pieces));
        return pieces;
    }

private:
    // An event takes place at its start, whatever its rule lists: such a start goes in front as an event of its own.
    // False: nothing follows it.
    bool PartStart(std::vector<EventDraft>& pieces)
    {
        EventRule& rule = m_draft.rule;
        const bool takesPlace = std::ranges::find(m_draft.exceptions, *m_draft.start) == m_draft.exceptions.end();
        EventDraft own = m_draft;
        own.rule = {};
        const bool isLast = rule.count == 1;
        rule.count -= rule.count == 0 ? 0 : 1;
        const auto next = isLast ? std::vector<EventTime>() : Find(*m_draft.start, kLast, 1);
        if (next.empty()) {
            own.Tell("start-not-in-rule", kRule,
                     "its rule lists neither its start nor a later day: it takes place once");
            pieces.push_back(std::move(own));
            return false;
        }
        const std::string from = ShownDay(next.front());
        Place(m_draft, next.front());
        if (!takesPlace) {
            m_draft.Tell("start-not-in-rule", kRule,
                         fmt::format("its rule does not list its start: it starts on {}", from));
            return true;
        }
        own.Tell("start-not-in-rule", kRule,
                 fmt::format("its rule does not list its start: it becomes that event and a series from {} on", from));
        pieces.push_back(std::move(own));
        m_draft.notes.clear();
        m_draft.Tell("start-not-in-rule", kRule, "the series without its start");
        return true;
    }

    std::vector<EventDraft> Runs()
    {
        const std::vector<EventTime> gone = Gone();
        if (gone.empty())
            return {m_draft};
        Split(gone);
        if (m_pieces.size() > kMostPieces) {
            m_draft.Tell("exception-dropped", Source(),
                         fmt::format("{} occurrences that do not take place stay in the series", gone.size()));
            return {m_draft};
        }
        Tell(gone);
        return std::move(m_pieces);
    }

    std::vector<EventTime> Find(const EventTime& from, const EventTime& to, std::size_t limit) const
    {
        return Occurrences(*m_draft.start, m_draft.rule, from, to, limit);
    }

    // Moves the start to the first occurrence that a handset can keep, if there is one.
    void Begin()
    {
        EventRule& rule = m_draft.rule;
        const bool isOften = rule.frequency == Frequency::Daily || rule.frequency == Frequency::Weekly;
        if (isOften && m_draft.start->year < kFirstOften)
            return;
        const auto first = Find(kFirst, kLast, 1);
        if (first.empty())
            return;
        if (rule.count != 0)
            rule.count -=
                static_cast<unsigned>(Find(*m_draft.start, TimeOf(SecondsOf(first.front()) - 1), kAll).size());
        m_draft.Tell("start-moved", kStart,
                     fmt::format("it starts on {} instead of {}: the handset keeps dates from {} on",
                                 ShownDay(first.front()), ShownDay(*m_draft.start), kFirstYear));
        Place(m_draft, first.front());
    }

    void Place(EventDraft& draft, const EventTime& start) const
    {
        draft.start = start;
        draft.end = TimeOf(SecondsOf(start) + m_length);
    }

    // The occurrences that do not take place, in order.
    std::vector<EventTime> Gone()
    {
        std::vector<EventTime> exceptions = m_draft.exceptions;
        std::ranges::sort(exceptions);
        exceptions.erase(std::unique(exceptions.begin(), exceptions.end()), exceptions.end());
        if (exceptions.empty())
            return {};
        std::vector<EventTime> gone;
        m_before = Find(*m_draft.start, exceptions.back(), kAll);
        std::ranges::set_intersection(m_before, exceptions, std::back_inserter(gone));
        return gone;
    }

    void Split(const std::vector<EventTime>& gone)
    {
        auto run = m_before.begin();
        for (const EventTime& exception : gone) {
            const auto end = std::ranges::find(run, m_before.end(), exception);
            if (run != end)
                AddRun(*run, static_cast<unsigned>(end - run));
            run = end + 1;
        }
        m_before.erase(run, m_before.end()); // an exception that is none may be later
        const auto next = Find(TimeOf(SecondsOf(gone.back()) + 1), kLast, 1);
        if (next.empty())
            return;
        EventDraft& rest = m_pieces.emplace_back(m_draft);
        Place(rest, next.front());
        if (rest.rule.count != 0)
            rest.rule.count -= static_cast<unsigned>(m_before.size());
    }

    void AddRun(const EventTime& start, unsigned count)
    {
        EventDraft& run = m_pieces.emplace_back(m_draft);
        Place(run, start);
        run.rule.until.reset();
        run.rule.count = count;
        if (count == 1)
            run.rule = {};
    }

    // The notes are told once.
    void Tell(const std::vector<EventTime>& gone)
    {
        std::vector<std::string> days;
        std::ranges::transform(gone, std::back_inserter(days), ShownDay);
        const std::string without = fmt::format("without {}", fmt::join(days, ", "));
        if (m_pieces.empty()) {
            EventDraft& nothing = m_pieces.emplace_back(m_draft);
            nothing.isMeant = false;
            nothing.problem = "no occurrence of the series takes place";
            return;
        }
        for (std::size_t i = 0; i < m_pieces.size(); ++i) {
            EventDraft& piece = m_pieces[i];
            if (i == 0) {
                piece.Tell("series-parted", Source(),
                           fmt::format("{}: the handset keeps no exceptions, so the series becomes {} {}", without,
                                       m_pieces.size(), m_pieces.size() == 1 ? "event" : "events"));
                continue;
            }
            piece.notes.clear();
            piece.Tell("series-parted", Source(), fmt::format("part {} of {} of the series", i + 1, m_pieces.size()));
        }
    }

    const char* Source() const { return m_draft.lines.contains("EXDATE") ? "EXDATE" : kRule; }

    EventDraft m_draft;
    const std::int64_t m_length;
    std::vector<EventTime> m_before; // the occurrences up to the last exception
    std::vector<EventDraft> m_pieces;
};

// What a handset can hold, so that it is safe to search for its occurrences.
bool IsSeries(const EventDraft& draft)
{
    const EventRule& rule = draft.rule;
    return draft.start && draft.end && draft.problem.empty() && rule.problem.empty() && rule.Repeats();
}

} // namespace

std::vector<EventDraft> PiecesOf(std::vector<EventDraft> drafts)
{
    std::vector<EventDraft> pieces;
    unsigned past = 0; // occurrences
    for (EventDraft& draft : drafts) {
        if (!IsSeries(draft)) {
            pieces.push_back(std::move(draft));
            continue;
        }
        EventRule& rule = draft.rule;
        rule.EndInOwnTime(draft.zone);
        if (rule.count != 0 && rule.count <= past) {
            draft.problem = "the series is over before this";
            draft.isMeant = false;
            pieces.push_back(std::move(draft));
            continue;
        }
        rule.count -= rule.count == 0 ? 0 : past;
        if (draft.before) {
            const bool isStartBeside = !rule.Lists(*draft.start) && *draft.start < *draft.before;
            const EventTime last = TimeOf(SecondsOf(*draft.before) - 1);
            rule.count = static_cast<unsigned>(Occurrences(*draft.start, rule, {}, last, kAll).size()) + isStartBeside;
            rule.until.reset();
            past += rule.count;
            if (rule.count == 0)
                continue;
        }
        std::ranges::move(Series(std::move(draft)).Pieces(), std::back_inserter(pieces));
    }
    // The first has the id of the series.
    for (std::size_t i = 1; i < pieces.size(); ++i)
        if (!pieces[i].uid.empty())
            pieces[i].uid = RunUid(pieces[i].uid, i + 1);
    return pieces;
}

} // namespace phnctl
