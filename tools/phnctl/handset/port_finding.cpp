#include "phnctl/handset/port_finding.h"

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <iterator>

namespace phnctl {

const char* const kUnansweredRemedy = "switch the handset off and on, or raise --wait";

namespace {

std::string Holders(const std::vector<host::Process>& holders)
{
    std::string text;
    for (const host::Process& holder : holders)
        text += fmt::format("{}{} (pid {})", text.empty() ? "" : ", ", holder.name.empty() ? "a program" : holder.name,
                            holder.id);
    return text;
}

bool IsThisTool(const host::Process& process)
{
    return process.name == "phnctl";
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
    PortFinding finding{entry.name,
                        StateName(report.state),
                        entry.name + ", " + entry.kind,
                        report.remedy,
                        Holders(report.holders),
                        report.state == host::PortState::Free && !entry.kind.starts_with("foreign")};
    if (std::any_of(report.holders.begin(), report.holders.end(), IsThisTool))
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

std::string InUse(const std::vector<PortFinding>& ports)
{
    std::vector<std::string> texts;
    for (const PortFinding& port : ports)
        if (!port.holders.empty())
            texts.push_back(fmt::format("{} is in use by {}", port.name, port.holders));
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
