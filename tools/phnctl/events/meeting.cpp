#include "phnctl/events/meeting.h"

#include "phnctl/events/event.h"
#include "phnctl/events/uid.h"
#include "phnctl/plan/meeting.h"

#include <fmt/format.h>
#include <map>
#include <utility>

namespace phnctl {

using namespace event_property;

namespace {

std::string SeriesOf(const Candidate& candidate)
{
    const std::string* const series = candidate.about.Find(event_fact::kSeries);
    if (series)
        return *series;
    const auto part = SeriesPartOf(ValueOf(candidate.entry, kUid));
    return part ? part->mark : "";
}

void LeaveOutOlderVersions(std::vector<Candidate>& candidates)
{
    struct Version
    {
        std::string version;
        std::string file;
    };
    std::map<std::string, Version> newest;                               // of each series
    std::map<std::pair<std::string, std::string>, std::string> versions; // of each series in each file
    for (const Candidate& candidate : candidates) {
        const std::string version = ValueOf(candidate.about, event_fact::kVersion);
        if (version.empty())
            continue;
        const std::string series = ValueOf(candidate.about, event_fact::kSeries);
        versions.try_emplace({series, candidate.file}, version);
        Version& best = newest[series];
        if (version > best.version)
            best = {version, candidate.file};
    }
    for (Candidate& candidate : candidates) {
        const std::string series = SeriesOf(candidate);
        const auto own = versions.find({series, candidate.file});
        if (!candidate.isMeant || own == versions.end() || own->second == newest[series].version)
            continue;
        candidate.isMeant = false;
        candidate.notes = {
            {kOlderVersion, "", candidate.line, fmt::format("{} holds a newer version of it", newest[series].file)}};
    }
}

} // namespace

std::string EventKey(const Entry& event)
{
    const std::string uid = ValueOf(event, kUid);
    return !uid.empty() ? "id " + uid : fmt::format("at {} {}", ValueOf(event, kStart), ValueOf(event, kText));
}

Plan MeetEvents(const EntryKind& kind, std::vector<Candidate> candidates, const Inventory& inventory)
{
    LeaveOutOlderVersions(candidates);
    const auto outcome = [](const Candidate& from, const Entry& present) {
        return std::optional(Outcome{CompleteEvent(from.entry, &present)});
    };
    return Meet(kind, {EventKey, outcome}, std::move(candidates), StorableOf(kind, inventory));
}

} // namespace phnctl
