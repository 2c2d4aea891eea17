#include "failures/session.h"

#include <algorithm>
#include <span>

#include "api/export_table.h"
#include "failures/allocation_faults.h"
#include "log/log_reader.h"
#include "phn_platform_test.h"
#include "phnnrv.h"
#include "support/messages.h"

namespace fs = std::filesystem;
using allocation_faults::LibraryScope;
using std::chrono::steady_clock;

namespace {

// How often the function that is registered for all callbacks was told: polled types, and the removal.
unsigned changes = 0;
unsigned removals = 0;

void PHN_CALL Tell(uint32_t type)
{
    ++(type == PHN_CALLBACK_REMOVED ? removals : changes);
}

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
    void Plug() const { handset_.Tell(folder_.attachment == Attachment::Usb ? "plug usb" : "plug serial"); }
    void FindExports();
    void Call(const ExportRow& row);
    void Call(const std::string& name) { Call(*std::ranges::find(rows_, name, &ExportRow::name)); }
    void Await(const std::function<bool()>& isDone) const;

    const HostFolder& folder_;
    const HandsetProcess& handset_;
    HMODULE library_ = nullptr;
    std::vector<ExportRow> rows_; // the last two begin and end the service
    SessionReport report_;
};

void Session::FindExports()
{
    const FindExport find = [this](const char* name) {
        return reinterpret_cast<void*>(GetProcAddress(library_, name));
    };
    rows_ = ExportTable(find, Tell);
    const auto text = reinterpret_cast<decltype(&PHN_GetNetworkErrorString)>(find("PHN_GetNetworkErrorString"));
    rows_.push_back({"PHN_GetNetworkErrorString", "", "pBuffer", "", 128, 0, Data::None, [text](void* buffer) {
                         return text(PHN_NETWORK_ERROR_1X_FADE, static_cast<char*>(buffer), 128);
                     }});
    const auto add = [&](const char* name, uint32_t success) {
        const auto call = reinterpret_cast<decltype(&PHN_Upgrade)>(find(name));
        rows_.push_back({name, "", nullptr, "", 0, 0, Data::None, [call](void*) { return call(); }});
        rows_.back().success = success;
    };
    for (const char* name : kUnimplemented)
        add(name, PHN_ERROR_NOT_SUPPORTED);
    add("PHN_Startup", PHN_ERROR_NONE);
    add("PHN_Shutdown", PHN_ERROR_NONE);
    for (ExportRow& row : rows_)
        row.call = [call = row.call](void* record) {
            const LibraryScope scope;
            return call(record);
        };
}

void Session::Call(const ExportRow& row)
{
    Outcome outcome{row.name, row.success, 0, {}, {}};
    const auto start = steady_clock::now();
    outcome.code = CallExport(row, &outcome.output);
    outcome.time = std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - start);
    outcome.heldLocks = platform_test::HeldLocks();
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

void Session::LiveShortly(const SessionPlan& plan)
{
    Call("PHN_Startup");
    for (unsigned more = plan.startups; --more > 0 && !report_.outcomes.back().HasSucceeded();) {
        if (report_.outcomes.back().code == PHN_ERROR_NO_DEVICE)
            report_.outcomes.pop_back();
        Call("PHN_Startup");
    }
    if (plan.before)
        plan.before();
    Call(plan.subject);
    if (plan.after)
        plan.after();
    Call("PHN_Shutdown");
    report_.wasChangeTold = report_.wasRemovalTold = true; // nothing was to be told
}

void Session::LiveWhole(unsigned startups)
{
    Call("PHN_Startup");
    for (const ExportRow& row : std::span(rows_).first(rows_.size() - 2))
        Call(row);
    handset_.Tell("changes");
    Await([] { return changes > 0; });
    report_.wasChangeTold = changes > 0;
    handset_.Tell("unplug");
    Await([] { return removals > 0; });
    report_.wasRemovalTold = removals > 0;
    Call("PHN_GetBatteryInfo");
    report_.outcomes.back().success = PHN_ERROR_NO_DEVICE;
    Plug();
    for (bool isServed = false; !isServed && startups-- > 0;) {
        Call("PHN_Startup");
        isServed = report_.outcomes.back().HasSucceeded();
        Call("PHN_GetBatteryInfo");
        isServed = isServed && report_.outcomes.back().HasSucceeded();
        if (!isServed && startups > 0)
            Await([] { return false; }); // a handset that was lost unseen is noticed when another arrives
    }
    Call("PHN_Shutdown");
}

SessionReport Session::Run(const SessionPlan& plan)
{
    const fs::path logs = folder_.library.parent_path();
    fs::current_path(logs); // where the log lies when the library's own place cannot be told
    for (const std::string& name : LogReader(logs).Files())
        fs::remove(logs / name);
    changes = removals = 0;
    handset_.Tell("reset");
    Plug();
    {
        const std::string path = folder_.library;
        const LibraryScope scope;
        library_ = LoadLibraryA(path.c_str());
    }
    report_.isLoaded = library_ != nullptr;
    if (library_) {
        FindExports();
        plan.subject.empty() ? LiveWhole(plan.startups) : LiveShortly(plan);
        const LibraryScope scope;
        report_.isUnloaded = FreeLibrary(library_) && !GetModuleHandleA("PHNNRV.dll");
    }
    report_.log = LogReader(logs).Text();
    return std::move(report_);
}

} // namespace

HostFolder::HostFolder(Attachment attached) : attachment(attached)
{
    fs::create_symlink(PHN_LIBRARY, library);
    SetLogging(0xFFFFF, attached == Attachment::Usb ? "\"Prompt Reads\"=dword:1\n" : "\"Prompt Reads\"=dword:0\n");
    setenv("PHNNRV_TIME_SCALE", std::to_string(1.0 / kTimeDivisor).c_str(), 1);
}

SessionReport RunSession(const HostFolder& folder, const HandsetProcess& handset, const SessionPlan& plan)
{
    return Session(folder, handset).Run(plan);
}
