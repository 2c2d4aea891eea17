// phnctl doctor: what was looked for and found, step by step, and the command that mends what is wrong.
#include "phnctl/command.h"
#include "phnctl/error_names.h"
#include "phnctl/failure.h"
#include "phnctl/json.h"
#include "phnctl/session.h"
#include "phnctl/surroundings.h"
#include "phnctl/text.h"
#include "system/system.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace {

// One thing that was looked at. The states are part of the JSON form: ok, note, missing, busy, no permission, unusable,
// failed.
struct Finding
{
    std::string step;
    std::string state;
    std::string detail;
    std::string remedy;
};

std::string Holders(const std::vector<host::Process>& holders)
{
    std::string text;
    for (const host::Process& holder : holders)
        text += fmt::format("{}{} (pid {})", text.empty() ? "" : ", ", holder.name.empty() ? "a program" : holder.name,
                            holder.id);
    return text;
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

class Examination
{
public:
    explicit Examination(const Options& options) : m_options(options) {}

    // True when a handset answers.
    bool Run()
    {
        try {
            Session session(m_options);
            Add({"library", "ok", session.Loaded().Path(), ""});
            LookAtPorts();
            return m_usablePorts != 0 ? AskHandset(session) : SkipHandset();
        } catch (const Refusal& refusal) {
            Add({"handset", "failed", refusal.what(), ""});
        } catch (const Failure& failure) {
            if (failure.ExitStatus() == kUsage)
                throw;
            Add({"library", "failed", failure.what(), ""});
            LookAtPorts();
        }
        return false;
    }

    Json ToJson(bool ok) const
    {
        JsonList findings;
        for (const Finding& finding : m_findings) {
            JsonObject object{{"step", {finding.step}}, {"state", {finding.state}}, {"detail", {finding.detail}}};
            if (!finding.remedy.empty())
                object.emplace_back("remedy", Json{finding.remedy});
            findings.push_back({std::move(object)});
        }
        return {JsonObject{{"ok", {ok}}, {"findings", {std::move(findings)}}}};
    }

private:
    // Shown at once: the last step may take as long as the wait.
    void Add(Finding finding)
    {
        if (!m_options.json) {
            fmt::print("{:<9} {:<14} {}\n", finding.step, finding.state, Printable(finding.detail));
            if (!finding.remedy.empty())
                fmt::print("{:<24} to mend it: {}\n", "", Printable(finding.remedy));
            std::fflush(stdout);
        }
        m_findings.push_back(std::move(finding));
    }

    void LookAtPorts()
    {
        const Surroundings around = LookAround();
        if (!around.problem.empty())
            Add({"ports", "missing", around.place + ": " + around.problem, around.remedy});
        else
            Add({"ports", "ok",
                 fmt::format("{}: {} {}", around.place, around.entries.size(),
                             around.entries.size() == 1 ? "entry" : "entries"),
                 ""});
        for (const PortEntry& entry : around.entries)
            LookAtPort(entry);
        for (const UnlistedTerminal& terminal : around.unlisted)
            Add({"terminal", "note", terminal.path + " is not in the " + around.place, terminal.remedy});
    }

    void LookAtPort(const PortEntry& entry)
    {
        const host::PortReport report = host::ExaminePort(entry.path);
        m_usablePorts += report.state == host::PortState::Free && !entry.kind.starts_with("foreign");
        std::string detail = entry.name + ", " + entry.kind;
        if (!report.target.empty())
            detail += " -> " + report.target;
        if (!report.reason.empty())
            detail += ": " + report.reason;
        if (!report.holders.empty())
            detail += ": " + Holders(report.holders);
        Add({"port", StateName(report.state), detail, report.remedy});
    }

    bool SkipHandset()
    {
        Add({"handset", "missing", "there is no free port to ask on",
             "plug a handset in, or start a simulated one: phnsim --port com5"});
        return false;
    }

    bool AskHandset(Session& session)
    {
        const PHN_ERROR answer = session.Find();
        if (answer != PHN_ERROR_NONE) {
            Add({"handset", "failed", fmt::format("{} (asked for {} s)", Explain(answer), m_options.waitSeconds), ""});
            return false;
        }
        session.Run([&](const Handset& handset) {
            const auto info = handset.Read(handset.Api().GetDeviceInfo, "reading the identity");
            Add({"handset", "ok", "answers: " + FromHandset(info.szModel), ""});
        });
        return true;
    }

    const Options& m_options;
    std::vector<Finding> m_findings;
    int m_usablePorts = 0;
};

int Doctor(const Invocation& invocation)
{
    Examination examination(invocation.options);
    const bool ok = examination.Run();
    if (invocation.options.json)
        fmt::print("{}\n", WriteJson(examination.ToJson(ok)));
    return ok ? kDone : kRefused;
}

} // namespace

std::vector<Command> DoctorCommands()
{
    return {{"doctor",
             "Find out why a handset is not found",
             "Looks at the ports, who holds them and who may use them, loads the library and asks for a\n"
             "handset. Every problem comes with the command that mends it. Status 0 when a handset answers.\n\n"
             "Examples:\n"
             "  phnctl doctor\n"
             "  phnctl doctor --json\n",
             {},
             Doctor}};
}

} // namespace phnctl
