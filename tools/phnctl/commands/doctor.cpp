// phnctl doctor: what was looked for and found, step by step, and the command that mends what is wrong.
#include "phnctl/cli/print.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/handset/port_finding.h"
#include "phnctl/handset/session.h"
#include "phnctl/handset/surroundings.h"
#include "phnctl/text/error_names.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/json.h"
#include "phnctl/text/text.h"

#include <chrono>
#include <fmt/format.h>

namespace phnctl {

namespace {

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
            return !Unanswered(m_ports).empty() ? AskHandset(session) : SkipHandset();
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
            FlushOutput();
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
        m_ports = phnctl::LookAtPorts(around.entries);
        for (const PortFinding& port : m_ports)
            Add({"port", port.state, port.detail, port.remedy});
        for (const std::vector<Finding>& findings : {around.unlisted, LookAtSystem()})
            for (const Finding& finding : findings)
                Add(finding);
    }

    bool SkipHandset()
    {
        if (const std::string inUse = InUse(m_ports); !inUse.empty()) {
            Add({"handset", "busy", "there is no free port to ask on", inUse + ": look again when that has ended"});
            return false;
        }
        const std::string simulator = SimulatorCommand();
        Add({"handset", "missing", "there is no free port to ask on",
             "plug a handset in" + (simulator.empty() ? "" : ", or start a simulated one: " + simulator)});
        return false;
    }

    bool AskHandset(Session& session)
    {
        const PHN_ERROR answer = session.Find(std::chrono::seconds(m_options.waitSeconds));
        if (answer != PHN_ERROR_NONE) {
            AddUnserved(answer);
            return false;
        }
        session.Run([&](const Handset& handset) {
            const auto info = handset.Read(handset.Api().GetDeviceInfo, "reading the identity");
            Add({"handset", "ok", "answers: " + FromHandset(info.szModel), ""});
        });
        return true;
    }

    // A port that was in use when the search began, or is now, may have been the handset's.
    std::string UnansweredRemedy() const
    {
        const std::string before = InUse(m_ports);
        const std::string inUse = before.empty() ? InUse(phnctl::LookAtPorts(LookAround().entries)) : before;
        return inUse.empty() ? kUnansweredRemedy : inUse + ": look again when that has ended";
    }

    void AddUnserved(PHN_ERROR answer)
    {
        const bool isUnanswered = answer == PHN_ERROR_NO_DEVICE || answer == PHN_ERROR_COMMUNICATION;
        Add({"handset", "failed",
             fmt::format("{} (asked for {} s)", isUnanswered ? Unanswered(m_ports) : Explain(answer),
                         m_options.waitSeconds),
             isUnanswered ? UnansweredRemedy() : ""});
    }

    const Options& m_options;
    std::vector<Finding> m_findings;
    std::vector<PortFinding> m_ports;
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
             "Looks at the ports, who holds them and who may use them, and at what makes them, loads the\n"
             "library and asks for a handset. Every problem comes with the command that mends it. Status 0\n"
             "when a handset answers.\n\n"
             "Examples:\n"
             "  phnctl doctor\n"
             "  phnctl doctor --json\n",
             {},
             Doctor}};
}

} // namespace phnctl
