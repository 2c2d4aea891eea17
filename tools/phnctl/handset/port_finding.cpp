#include "phnctl/handset/port_finding.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <iterator>

namespace phnctl {

const char* const kUnansweredRemedy = "switch the handset off and on, or raise --wait";

namespace {

bool IsThisTool(const host::Process& process)
{
    return process.name == "phnctl" || process.name == "phnctl.exe";
}

const char* StateName(host::PortState state)
{
    switch (state) {
    case host::PortState::Free:
        return "ok";
    case host::PortState::Busy:
        return "busy";
    case host::PortState::NoPermission:
        return "no permission";
    case host::PortState::Unusable:
        break;
    }
    return "unusable";
}

PortFinding LookAtPort(const PortEntry& entry)
{
    const host::PortReport report = host::ExaminePort(entry.path);
    const bool isLookedAt = !entry.kind.starts_with("foreign");
    PortFinding finding{entry.name,
                        StateName(report.state),
                        entry.name + ", " + entry.kind,
                        report.remedy,
                        Names(report.holders),
                        isLookedAt && report.state == host::PortState::Free,
                        isLookedAt && report.state == host::PortState::Busy,
                        std::any_of(report.holders.begin(), report.holders.end(), IsThisTool)};
    if (finding.isThisTools)
        finding.remedy =
            "wait until it ends, or end it with Ctrl-C where it runs; do not kill it, as it may be writing";
    if (!report.target.empty())
        finding.detail += " -> " + report.target;
    if (!report.reason.empty())
        finding.detail += ": " + report.reason;
    if (!report.holders.empty())
        finding.detail += ": " + finding.holders;
    return finding;
}

} // namespace

std::vector<PortFinding> LookAtPorts(const std::vector<PortEntry>& entries)
{
    std::vector<PortFinding> findings;
    std::transform(entries.begin(), entries.end(), std::back_inserter(findings), LookAtPort);
    return findings;
}

std::string Names(const std::vector<host::Process>& processes)
{
    std::vector<std::string> texts;
    for (const host::Process& process : processes)
        texts.push_back(fmt::format("{} (pid {})", process.name.empty() ? "a program" : process.name, process.id));
    return fmt::format("{}", fmt::join(texts, ", "));
}

std::string InUse(const std::vector<PortFinding>& ports)
{
    std::vector<std::string> texts;
    for (const PortFinding& port : ports)
        if (port.isBusy)
            texts.push_back(
                fmt::format("{} is in use by {}", port.name, port.holders.empty() ? "another program" : port.holders));
    return fmt::format("{}", fmt::join(texts, "; "));
}

std::string Unanswered(const std::vector<PortFinding>& ports)
{
    std::vector<std::string> names;
    for (const PortFinding& port : ports)
        if (port.isAsked)
            names.push_back(port.name);
    if (names.empty())
        return {};
    return fmt::format("{} {} there, but did not answer", fmt::join(names, ", "), names.size() == 1 ? "is" : "are");
}

} // namespace phnctl
