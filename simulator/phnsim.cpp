// phnsim: a simulated handset on a serial port, driven by control lines on standard input.
#include "simulator/command.h"
#include "simulator/descriptor_line.h"
#include "simulator/phnsim_control.h"
#include "simulator/phnsim_options.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <exception>
#include <filesystem>
#include <stdexcept>

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace {

using namespace simulator;

constexpr int kFailed = 1;
constexpr int kUsageError = 2;

void ListCommands()
{
    for (const Command& command : AllCommands())
        std::printf("%3u  %s\n", command.number, command.name);
}

void Print(std::string_view line)
{
    std::printf("%.*s\n", static_cast<int>(line.size()), line.data());
    std::fflush(stdout);
}

void PrintTrace(std::string_view line)
{
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm local{};
    localtime_r(&seconds, &local);
    std::array<char, 16> time{};
    std::strftime(time.data(), time.size(), "%H:%M:%S", &local);
    std::printf("%s.%03d %.*s\n", time.data(), static_cast<int>(milliseconds), static_cast<int>(line.size()),
                line.data());
    std::fflush(stdout);
}

// Blocked before any thread starts, so that every thread leaves them to this descriptor.
int BlockEndSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&signals, number);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return Checked(signalfd(-1, &signals, SFD_CLOEXEC), "signalfd");
}

// Takes what standard input offers and carries out every whole line; false at its end.
bool TakeInput(Control& control, std::string& pending)
{
    std::array<char, 4096> buffer;
    const ssize_t size = read(STDIN_FILENO, buffer.data(), buffer.size());
    if (size <= 0)
        return false;
    pending.append(buffer.data(), static_cast<std::size_t>(size));
    std::size_t end = 0;
    while (!control.isOver && (end = pending.find('\n')) != std::string::npos) {
        ExecuteControlLine(control, std::string_view(pending).substr(0, end));
        pending.erase(0, end + 1);
    }
    return true;
}

// Until a signal or "quit". The end of standard input is no reason to end.
void RunControl(Control& control, int signals)
{
    std::string pending;
    std::array<pollfd, 2> waits{pollfd{signals, POLLIN, 0}, pollfd{STDIN_FILENO, POLLIN, 0}};
    while (!control.isOver) {
        if (poll(waits.data(), waits.size(), -1) < 0)
            continue;
        if (waits[0].revents != 0)
            return;
        if (waits[1].revents != 0 && !TakeInput(control, pending))
            waits[1].fd = -1;
    }
}

void Prepare(Simulator& simulator, const PhnsimOptions& options)
{
    Handset& handset = simulator.Control();
    if (!options.data.empty() && std::filesystem::exists(options.data))
        handset.Load(options.data);
    handset.Seed(options.seed);
    for (const std::string& fault : options.faults)
        handset.AddFault(fault);
    if (options.trace)
        handset.SetTrace(PrintTrace, options.hex ? TraceDetail::Hex : TraceDetail::Decoded);
}

// What a newcomer meets first: the usual directory is root's to make.
void CheckDevices(const std::string& devices)
{
    const bool isThere = std::filesystem::is_directory(devices);
    if (isThere && access(devices.c_str(), W_OK | X_OK) == 0)
        return;
    throw std::runtime_error(
        (isThere ? "this user may not write into the device directory " : "there is no device directory ") + devices +
        "\nChoose another one with --devices or PHNNRV_DEVICES, which phnctl needs as well, and make "
        "it:\n  export PHNNRV_DEVICES=/tmp/handsets; mkdir -p $PHNNRV_DEVICES");
}

int Run(const PhnsimOptions& options)
{
    if (!options.tcpPort)
        CheckDevices(options.devices);
    std::signal(SIGPIPE, SIG_IGN); // a TCP peer or a reader of the trace that goes is no reason to die
    const Descriptor signals(BlockEndSignals());
    Simulator simulator(options.tcpPort ? TcpLines(*options.tcpPort) : PtyLines(options.devices, options.name),
                        options.kind);
    Prepare(simulator, options);
    simulator.Start();
    const std::string place =
        options.tcpPort ? "127.0.0.1:" + std::to_string(*options.tcpPort) : options.devices + "/" + options.name;
    Print("serving " + simulator.Control().Snapshot().identity.model + " on " + place);
    Control control{.simulator = simulator, .dataFile = options.data, .print = Print, .trace = PrintTrace};
    RunControl(control, signals.Get());
    simulator.Stop();
    if (!options.data.empty())
        simulator.Control().Save(options.data);
    return 0;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const auto parsed = ParsePhnsimOptions(argumentCount, arguments);
    if (const int* status = std::get_if<int>(&parsed))
        return *status;
    const auto& options = std::get<PhnsimOptions>(parsed);
    if (options.listCommands) {
        ListCommands();
        return 0;
    }
    try {
        return Run(options);
    } catch (const std::invalid_argument& error) {
        std::fprintf(stderr, "phnsim: %s\n", error.what());
        return kUsageError;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "phnsim: %s\n", error.what());
        return kFailed;
    }
}
