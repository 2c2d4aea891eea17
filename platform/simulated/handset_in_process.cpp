#include "handset_in_process.h"

#include "device_interface.h"
#include "log/log.h"

#include <windows.h>

#include <array>
#include <exception>
#include <system_error>

namespace simulated {
namespace {

constexpr CLogSource Log{LOG_PHNNRV};

constexpr char kScript[] = "PHNNRV-simulated.txt";
constexpr char kReport[] = "PHNNRV-simulated.report.txt";
constexpr std::chrono::milliseconds kForTheScript(100);

constinit HandsetInProcess* instance = nullptr;

std::filesystem::path LibraryFolder()
{
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, kScript,
                       &module);
    std::array<wchar_t, 32768> path{};
    GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    return std::filesystem::path(path.data()).parent_path();
}

// The run-time library looks for its clocks at the first call, for which it needs the lock that is held while a library
// is loaded and unloaded. So the loading thread calls them first: an unload may come before those at work have.
void FindClocks()
{
    static_cast<void>(std::chrono::system_clock::now());
    static_cast<void>(std::chrono::steady_clock::now());
}

} // namespace

HandsetInProcess* HandsetInProcess::Begin()
{
    if (instance)
        return instance;
    Log.Error("The handset is simulated, inside this process");
    FindClocks();
    try {
        instance = new HandsetInProcess;
    } catch (const std::exception& error) {
        Report().TellWrong(error.what());
    }
    return instance;
}

HandsetInProcess* HandsetInProcess::Get()
{
    return instance;
}

void HandsetInProcess::End()
{
    delete std::exchange(instance, nullptr);
}

HandsetInProcess::HandsetInProcess()
    : simulator_(port_.Lines(), simulator::PortKind::Diagnostic),
      control_{.simulator = simulator_,
               .history = history_,
               .wakeup = wakeup_,
               .dataFile = {},
               .print = [this](std::string_view line) { report_.Print(line); },
               .trace = [this](std::string_view line) { report_.Print(line); }},
      loop_(control_, {.file = R"(\\.\pipe\phnsim)"}, false)
{
    simulator::Handset& handset = simulator_.Control();
    handset.SetModel(handset.Snapshot().identity.model + " (simulated)");
    handset.SetWatcher([this](const simulator::Exchange& exchange) {
        history_.Add(exchange);
        wakeup_.WaitUntilServed(kForTheScript);
    });
    ReadScript();
    if (control_.isOver) {
        port_.Withdraw();
        TellVerdict();
        return;
    }
    try {
        pipe_.emplace(loop_, report_);
    } catch (const std::system_error& error) {
        report_.TellWrong(std::string("there are no control lines: ") + error.what());
    }
    working_.emplace([this] { Work(); });
}

// The handset first, so that what the host has done last is judged; then the script, which still prints.
HandsetInProcess::~HandsetInProcess()
{
    simulator_.Stop();
    loop_.Stop("the library was unloaded");
    working_.reset();
    pipe_.reset();
}

void HandsetInProcess::ReadScript()
{
    const std::filesystem::path folder = LibraryFolder();
    std::ifstream script(folder / kScript);
    hasScript_ = script.is_open();
    if (!hasScript_)
        return;
    report_.OpenFile(folder / kReport);
    loop_.Script().AddAll(script, kScript);
    loop_.Script().Add({.file = kScript}, {[this](simulator::Control&) { TellVerdict(); }});
}

// Lines up to the first that waits come before anything that the host has sent.
void HandsetInProcess::Work()
{
    try {
        simulator_.Start();
        loop_.Script().Advance();
        port_.Offer();
        loop_.Run();
        TellVerdict();
        simulator_.Unplug();
    } catch (const std::exception& error) {
        report_.TellWrong(error.what());
    }
}

void HandsetInProcess::TellVerdict()
{
    const std::scoped_lock lock(control_.mutex);
    if (control_.failure)
        report_.TellWrong(*control_.failure);
    else if (std::exchange(hasScript_, false))
        report_.Print(std::string(kScript) + ": passed");
}

} // namespace simulated
