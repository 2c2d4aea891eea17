#include "failures/session.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "failures/allocation_faults.h"
#include "failures/export_calls.h"
#include "log/log_reader.h"
#include "phnnrv.h"
#include "support/messages.h"

namespace fs = std::filesystem;
using allocation_faults::LibraryScope;
using std::chrono::steady_clock;

namespace {

// What does not come within this time does not come: a poll takes 2 s, and the time is scaled.
constexpr std::chrono::milliseconds kPatience(150);

class Session
{
public:
    Session(const HostFolder& folder, const HandsetProcess& handset) : folder_(folder), handset_(handset) {}

    SessionReport Run(const SessionPlan& plan);

private:
    void LiveShortly(const SessionPlan& plan);
    void LiveWhole(unsigned startups);
    void Plug() const;
    void Call(const ExportCall& call);
    void Await(const std::function<bool()>& isDone) const;

    const HostFolder& folder_;
    const HandsetProcess& handset_;
    HMODULE library_ = nullptr;
    SessionReport report_;
};

void RemoveLogs(const fs::path& folder)
{
    for (const std::string& name : LogReader(folder).Files())
        fs::remove(folder / name);
}

void Session::Call(const ExportCall& call)
{
    const FindExport find = [this](const char* name) {
        return reinterpret_cast<void*>(GetProcAddress(library_, name));
    };
    Outcome outcome{call.name, call.success, 0, {}, {}};
    const auto start = steady_clock::now();
    outcome.code = call.call(find, &outcome.output);
    outcome.time = std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - start);
    report_.outcomes.push_back(std::move(outcome));
}

// Dispatches messages until that is so, or just those that come first when nothing is to be expected.
void Session::Await(const std::function<bool()>& isDone) const
{
    const bool isExpected = std::ranges::any_of(report_.outcomes, [](const Outcome& outcome) {
        return outcome.name == "PHN_SetCallback" && outcome.code == outcome.success;
    });
    const auto end = steady_clock::now() + kPatience;
    const LibraryScope scope;
    do {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 500, QS_ALLINPUT);
        DispatchPending();
    } while (isExpected && !isDone() && steady_clock::now() < end);
}

void Session::Plug() const
{
    handset_.Tell(folder_.attachment == Attachment::Usb ? "plug usb" : "plug serial");
}

void Session::LiveShortly(const SessionPlan& plan)
{
    Call(Startup());
    for (unsigned more = plan.startups; --more > 0 && !report_.outcomes.back().HasSucceeded();) {
        if (report_.outcomes.back().code == PHN_ERROR_NO_DEVICE)
            report_.outcomes.pop_back();
        Call(Startup());
    }
    if (plan.before)
        plan.before();
    Call(*std::ranges::find(ExportCalls(), plan.subject, &ExportCall::name));
    if (plan.after)
        plan.after();
    Call(Shutdown());
    report_.wasChangeTold = report_.wasRemovalTold = true; // nothing was to be told
}

void Session::LiveWhole(unsigned startups)
{
    Call(Startup());
    for (const ExportCall& call : ExportCalls())
        Call(call);
    Told all{};
    const auto isTold = [&] {
        const Told more = TakeTold();
        all = {all.changes + more.changes, all.removals + more.removals};
        return all.changes > 0;
    };
    handset_.Tell("changes");
    Await(isTold);
    report_.wasChangeTold = all.changes > 0;
    handset_.Tell("unplug");
    Await([&] { return isTold(), all.removals > 0; });
    report_.wasRemovalTold = all.removals > 0;
    Call(Battery());
    report_.outcomes.back().success = PHN_ERROR_NO_DEVICE;
    Plug();
    for (bool isServed = false; !isServed && startups-- > 0;) {
        Call(Startup());
        isServed = report_.outcomes.back().HasSucceeded();
        Call(Battery());
        isServed = isServed && report_.outcomes.back().HasSucceeded();
        if (!isServed && startups > 0)
            Await([] { return false; }); // a handset that was lost unseen is noticed when another arrives
    }
    Call(Shutdown());
}

SessionReport Session::Run(const SessionPlan& plan)
{
    const fs::path logs = folder_.library.parent_path();
    fs::current_path(logs); // where the log lies when the library's own place cannot be told
    RemoveLogs(logs);
    TakeTold();
    handset_.Tell("reset");
    Plug();
    {
        const std::string path = folder_.library;
        const LibraryScope scope;
        library_ = LoadLibraryA(path.c_str());
    }
    report_.isLoaded = library_ != nullptr;
    if (library_) {
        plan.subject.empty() ? LiveWhole(plan.startups) : LiveShortly(plan);
        const LibraryScope scope;
        report_.isUnloaded = FreeLibrary(library_) && !GetModuleHandleA("PHNNRV.dll");
    }
    report_.log = LogReader(logs).Text();
    return std::move(report_);
}

} // namespace

HostFolder::HostFolder(const fs::path& folder, Attachment attached)
    : devices(folder / "devices"), library(folder / "libphnnrv.so"), attachment(attached)
{
    fs::create_directory(devices);
    fs::create_symlink(PHN_LIBRARY, library);
    const fs::path registry = folder / "phnnrv.reg";
    std::ofstream(registry) << "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n"
                               "\"Logging Level\"=dword:fffff\n\"Prompt Reads\"=dword:"
                            << (attached == Attachment::Usb) << '\n';
    setenv("PHNNRV_DEVICES", devices.c_str(), 1);
    setenv("PHNNRV_REGISTRY", registry.c_str(), 1);
    setenv("PHNNRV_TIME_SCALE", std::to_string(1.0 / kTimeDivisor).c_str(), 1);
}

SessionReport RunSession(const HostFolder& folder, const HandsetProcess& handset, const SessionPlan& plan)
{
    return Session(folder, handset).Run(plan);
}
