#include "handset_in_process.h"

#include "device_interface.h"
#include "log/log.h"

#include <windows.h>

#include <array>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace simulated {
namespace {

constexpr CLogSource Log{LOG_PHNNRV};

constexpr char kScript[] = "PHNNRV-simulated.txt";
constexpr char kReport[] = "PHNNRV-simulated.report.txt";
constexpr std::chrono::milliseconds kForTheScript(100);

constinit HandsetInProcess* instance = nullptr;
constinit bool hasBegun = false;

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

simulator::Phone SimulatedPhone()
{
    simulator::Phone phone = simulator::DefaultPhone();
    phone.identity.model += " (simulated)";
    return phone;
}

} // namespace

HandsetInProcess* HandsetInProcess::Begin()
{
    if (hasBegun)
        return instance;
    hasBegun = true;
    Log.Error("The handset is simulated, inside this process");
    FindClocks();
    try {
        instance = new HandsetInProcess;
    } catch (const std::exception& error) {
        TellWrong(error.what());
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
    : simulator_(port_.Lines(), simulator::PortKind::Diagnostic, SimulatedPhone()),
      control_{.simulator = simulator_,
               .history = history_,
               .wakeup = wakeup_,
               .dataFile = {},
               .print = [this](std::string_view line) { Print(line); },
               .trace = [this](std::string_view line) { Print(line); }},
      loop_(control_, {.file = R"(\\.\pipe\phnsim)"}, 0)
{
    simulator_.WhenLost([this](const std::string& why) { control_.Fail("the port is lost: " + why); });
    simulator_.Control().SetWatcher([this](const simulator::Exchange& exchange) {
        history_.Add(exchange);
        wakeup_.WaitUntilServed(kForTheScript);
    });
    try {
        ReadScript();
    } catch (const std::exception& error) {
        control_.Fail(error.what());
    }
    if (control_.isOver) {
        port_.Withdraw();
        TellVerdict();
    }
    try {
        pipe_.emplace(loop_);
    } catch (const std::system_error& error) {
        Tell(std::string("there are no control lines: ") + error.what());
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

// What an earlier run's report says is not left to stand for this one's.
void HandsetInProcess::ReadScript()
{
    const std::filesystem::path script = LibraryFolder() / kScript, report = LibraryFolder() / kReport;
    if (!std::filesystem::exists(script)) {
        std::error_code error;
        std::filesystem::remove(report, error);
        if (error)
            TellWrong(std::string(kReport) + " is an earlier run's and cannot be removed");
        return;
    }
    hasScript_ = true;
    report_.Open(report);
    std::ifstream lines(script);
    if (!lines)
        throw std::runtime_error(std::string(kScript) + " cannot be read");
    loop_.Script().AddAll(lines, kScript);
    loop_.Script().Add({.file = kScript}, {[this](simulator::Control&) { TellVerdict(); }});
}

// The pipe's clients learn that the handset has ended, and why, as long as the library is loaded.
void HandsetInProcess::Work()
{
    const std::string ended = "the simulated handset has ended";
    if (!control_.isOver) {
        Serve();
        if (pipe_ && !control_.Failure())
            pipe_->Say(ended);
    }
    loop_.Refuse(ended + ": " + control_.Failure().value_or("a line said so"));
}

// Lines up to the first that waits come before anything that the host has sent.
void HandsetInProcess::Serve()
{
    try {
        simulator_.Start();
        loop_.Script().Advance();
        port_.Offer();
        loop_.Run();
        TellVerdict();
        simulator_.Unplug();
    } catch (const std::exception& error) {
        control_.Fail(error.what());
        TellVerdict();
    }
}

void HandsetInProcess::Print(std::string_view line)
{
    report_.Print(line);
    if (pipe_)
        pipe_->Say(line);
}

void HandsetInProcess::TellVerdict()
{
    if (!report_.IsWhole())
        control_.Fail(std::string(kReport) + " cannot be written");
    if (const auto failure = control_.Failure())
        Tell(*failure);
    else if (std::exchange(hasScript_, false))
        Print(std::string(kScript) + ": passed");
}

void HandsetInProcess::Tell(const std::string& wrong)
{
    Print(wrong);
    TellWrong(wrong);
}

} // namespace simulated
