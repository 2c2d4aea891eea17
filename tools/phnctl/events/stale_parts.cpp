// What earlier imports left of the series that the files hold anew.
#include "phnctl/events/event.h"
#include "phnctl/events/meeting.h"
#include "phnctl/events/uid.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <map>
#include <optional>
#include <set>

namespace phnctl {

namespace {

std::string PartInWords(const SeriesPart& part, const Event& event)
{
    const std::string when = event.start ? Shown(LocalTimeOf(*event.start, event.zone)) : "";
    return part.run.empty() ? fmt::format("an occurrence of the series, moved to {}", when)
                            : fmt::format("part {} of the series, from {} on", part.run, when);
}

class SeriesOfPlan
{
public:
    explicit SeriesOfPlan(Plan& plan) : m_plan(plan)
    {
        for (std::size_t at = 0; at < plan.entries.size(); ++at) {
            const PlannedEntry& planned = plan.entries[at];
            const std::string key = EventKey(planned.from.entry);
            if (planned.from.isMeant)
                m_keys.insert(key);
            if (FactOf(at, event_fact::kSeries).empty())
                continue;
            Series& series = m_series[FactOf(at, event_fact::kSeries)];
            series.members.push_back(at);
            if (!planned.from.isMeant)
                m_unmeant.try_emplace(key, at);
            if (!series.unheld && (planned.action == Action::CannotHold || planned.action == Action::NoRoom))
                series.unheld = at;
            if (planned.action == Action::CannotHold)
                m_refused.try_emplace(key, at);
        }
    }

    // The key is that of the entry in the form in which entries are compared.
    void Look(const StoredEntry& stored, const std::string& key)
    {
        if (const auto refused = m_refused.find(key); refused != m_refused.end())
            return m_staying[refused->second].push_back(stored.index);
        const Event event = EventOf(stored.entry);
        const auto part = SeriesPartOf(event.uid);
        const auto whole = WholeOf(key, part);
        if (!whole || m_keys.contains(key))
            return;
        const Series& series = m_series[FactOf(*whole, event_fact::kSeries)];
        if (IsCancelled(*whole))
            m_staying[*whole].push_back(stored.index);
        else if (series.unheld)
            m_staying[*series.unheld].push_back(stored.index);
        else
            m_plan.deletions.push_back({stored,
                                        series.members,
                                        {{"stale-part", "", 0,
                                          part ? PartInWords(*part, event) + ", which the file no longer has"
                                               : "the series, of which no occurrence takes place any more"}}});
    }

    void TellWhatStays(const std::string& many) const
    {
        for (const auto& [at, indexes] : m_staying)
            m_plan.entries[at].Tell("still-there",
                                    fmt::format("the handset still holds {}; 'phnctl {} delete {}' takes it off",
                                                IsCancelled(at) ? "it" : "an earlier version", many,
                                                fmt::join(indexes, " ")));
    }

private:
    struct Series
    {
        std::vector<std::size_t> members;  // in the plan
        std::optional<std::size_t> unheld; // the first of them that does not go over
    };

    std::string FactOf(std::size_t at, const char* fact) const { return ValueOf(m_plan.entries[at].from.about, fact); }
    bool IsCancelled(std::size_t at) const { return !FactOf(at, event_fact::kCancelled).empty(); }

    // What the files say of the series that an event of the handset belongs to.
    std::optional<std::size_t> WholeOf(const std::string& key, const std::optional<SeriesPart>& part) const
    {
        if (part) {
            const auto series = m_series.find(part->mark);
            return series == m_series.end() ? std::nullopt : std::optional(series->second.members.front());
        }
        const auto unmeant = m_unmeant.find(key);
        return unmeant == m_unmeant.end() ? std::nullopt : std::optional(unmeant->second);
    }

    Plan& m_plan;
    std::set<std::string> m_keys; // of what is to be stored
    std::map<std::string, Series> m_series;
    std::map<std::string, std::size_t> m_unmeant; // by key: of what nothing is to be stored
    std::map<std::string, std::size_t> m_refused; // by key: what the handset cannot hold
    std::map<std::size_t, std::vector<std::uint32_t>> m_staying;
};

} // namespace

void DeleteStaleParts(const EntryKind& kind, Plan& plan, const Inventory& inventory)
{
    SeriesOfPlan series(plan);
    for (const StoredEntry& stored : inventory.entries)
        series.Look(stored, EventKey(kind.Storable(stored.entry)));
    series.TellWhatStays(kind.Many());
}

} // namespace phnctl
