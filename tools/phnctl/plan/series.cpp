// What earlier imports left of the series that the files hold anew.
#include "phnctl/plan/plan.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <map>
#include <set>
#include <utility>

namespace phnctl {

namespace {

class SeriesOfPlan
{
public:
    SeriesOfPlan(const EntryForm& form, Plan& plan) : m_form(form), m_plan(plan)
    {
        for (PlannedEntry& planned : plan.entries) {
            const Candidate& from = planned.from;
            if (from.isMeant)
                m_keys.insert(form.Key(from.entry));
            if (from.series.empty())
                continue;
            m_bySeries.try_emplace(from.series, &planned);
            if (!from.isMeant)
                m_byKey.try_emplace(form.Key(from.entry), &planned);
            if (planned.action == Action::CannotHold || planned.action == Action::NoRoom)
                m_unheld.try_emplace(from.series, &planned);
            if (planned.action == Action::CannotHold)
                m_refused.try_emplace(form.Key(from.entry), &planned);
        }
    }

    void Look(const StoredEntry& stored)
    {
        const std::string key = m_form.Key(m_form.Storable(stored.entry));
        const EntryPart part = m_form.PartOf(stored.entry);
        if (const auto refused = m_refused.find(key); refused != m_refused.end())
            return m_staying[refused->second].push_back(stored.index);
        PlannedEntry* const whole = WholeOf(key, part);
        if (!whole || m_keys.contains(key))
            return;
        const Candidate& from = whole->from;
        if (from.isCancelled)
            m_staying[whole].push_back(stored.index);
        else if (const auto unheld = m_unheld.find(from.series); unheld != m_unheld.end())
            m_staying[unheld->second].push_back(stored.index);
        else
            m_plan.deletions.push_back(
                {stored,
                 from.series,
                 {{"stale-part", "", 0,
                   part.series.empty() ? "the series, of which no occurrence takes place any more"
                                       : part.words + ", which the file no longer has"}}});
    }

    void TellWhatStays() const
    {
        for (const auto& [planned, indexes] : m_staying) {
            const std::string list = fmt::format("{}", fmt::join(indexes, " "));
            planned->from.notes.push_back(
                {"still-there", "", planned->from.line,
                 fmt::format("the handset still holds {}; 'phnctl {} delete {}' takes it off",
                             planned->from.isCancelled ? "it" : "an earlier version", m_form.Many(), list)});
        }
    }

private:
    // What the files say of the series that a handset's entry belongs to; null: nothing.
    PlannedEntry* WholeOf(const std::string& key, const EntryPart& part) const
    {
        const auto& known = part.series.empty() ? m_byKey : m_bySeries;
        const auto found = known.find(part.series.empty() ? key : part.series);
        return found == known.end() ? nullptr : found->second;
    }

    const EntryForm& m_form;
    Plan& m_plan;
    std::set<std::string> m_keys;                    // of what is to be stored
    std::map<std::string, PlannedEntry*> m_bySeries; // the first of each
    std::map<std::string, PlannedEntry*> m_byKey;    // of which nothing is to be stored
    std::map<std::string, PlannedEntry*> m_unheld;   // a part of each series that does not go over
    std::map<std::string, PlannedEntry*> m_refused;  // by key: what the handset cannot hold
    std::map<PlannedEntry*, std::vector<std::uint32_t>> m_staying;
};

} // namespace

void LeaveOutOlderVersions(const EntryForm& form, std::vector<Candidate>& candidates)
{
    struct Version
    {
        std::string version;
        std::string file;
    };
    std::map<std::string, Version> newest;                               // of each series
    std::map<std::pair<std::string, std::string>, std::string> versions; // of each series in each file
    for (const Candidate& candidate : candidates) {
        if (candidate.version.empty())
            continue;
        versions.try_emplace({candidate.series, candidate.file}, candidate.version);
        Version& best = newest[candidate.series];
        if (candidate.version > best.version)
            best = {candidate.version, candidate.file};
    }
    for (Candidate& candidate : candidates) {
        const std::string series = candidate.series.empty() ? form.PartOf(candidate.entry).series : candidate.series;
        const auto own = versions.find({series, candidate.file});
        if (!candidate.isMeant || own == versions.end() || own->second == newest[series].version)
            continue;
        candidate.isMeant = false;
        candidate.notes = {
            {kOlderVersion, "", candidate.line, fmt::format("{} holds a newer version of it", newest[series].file)}};
    }
}

void DropStaleParts(const EntryForm& form, Plan& plan, const Inventory& inventory)
{
    SeriesOfPlan series(form, plan);
    for (const StoredEntry& stored : inventory.entries)
        series.Look(stored);
    series.TellWhatStays();
}

} // namespace phnctl
