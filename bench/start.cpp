// How long a host waits for the first answer of a USB handset that is there when it loads the library, without what the
// exchanges themselves take. Each start has a process of its own; the handset lives in another.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

#include <windows.h>

#include "figure.h"
#include "phnnrv.h"
#include "simulator/lines/device_directory.h"
#include "simulator/lines/simulator.h"

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

// The greeting, the identity that the startup asks for, and the answer.
constexpr int kExchanges = 3;
constexpr int kMore = 50;

double MillisecondsSince(std::chrono::steady_clock::time_point start)
{
    return Milliseconds(std::chrono::steady_clock::now() - start).count();
}

// Loads, starts and asks; ends the process. What it took goes into the pipe.
[[noreturn]] void Start(int out)
{
    const auto start = std::chrono::steady_clock::now();
    const HMODULE library = LoadLibraryA("PHNNRV.dll");
    const auto find = [&](const char* name) { return reinterpret_cast<void*>(GetProcAddress(library, name)); };
    if (!library || reinterpret_cast<decltype(&PHN_Startup)>(find("PHN_Startup"))() != PHN_ERROR_NONE)
        _exit(1);
    const auto ask = reinterpret_cast<decltype(&PHN_GetBatteryInfo)>(find("PHN_GetBatteryInfo"));
    PHN_BATTERY_INFO battery{};
    battery.uSize = sizeof battery;
    if (ask(&battery) != PHN_ERROR_NONE)
        _exit(1);
    const double whole = MillisecondsSince(start);
    const auto more = std::chrono::steady_clock::now();
    for (int i = 0; i < kMore; ++i)
        ask(&battery);
    const double beyond = whole - kExchanges * MillisecondsSince(more) / kMore;
    _exit(write(out, &beyond, sizeof beyond) == sizeof beyond ? 0 : 1);
}

// Of one start; infinite when it fails.
double Measure()
{
    constexpr double kFailed = std::numeric_limits<double>::infinity();
    int ends[2];
    if (pipe(ends))
        return kFailed;
    const pid_t process = fork();
    if (process == 0)
        Start(ends[1]);
    close(ends[1]);
    double beyond = 0;
    const bool isDone = read(ends[0], &beyond, sizeof beyond) == sizeof beyond;
    close(ends[0]);
    waitpid(process, nullptr, 0);
    return isDone ? beyond : kFailed;
}

double MedianOfFive()
{
    std::array<double, 5> starts{};
    std::generate(starts.begin(), starts.end(), Measure);
    std::sort(starts.begin(), starts.end());
    return starts[2];
}

} // namespace

int main()
{
    const simulator::DeviceDirectory devices;
    setenv("PHNNRV_DEVICES", devices.Path().c_str(), 1);
    setenv("PHNNRV_REGISTRY", (devices.Path() / "none.reg").c_str(), 1);
    simulator::Simulator handset(devices.Path(), simulator::UsbInterfaceName("0001"));
    handset.Start();
    bool isGood = true;
    for (const bool prompt : {false, true}) {
        setenv("PHNNRV_PROMPT_READS", prompt ? "1" : "0", 1);
        const std::string way = prompt ? ", prompt reads" : "";
        const bool isMet = bench::Judge({.what = "load to first answer without its exchanges" + way,
                                         .value = MedianOfFive(),
                                         .unit = "ms",
                                         .limit = 30});
        isGood = isGood && isMet;
    }
    return isGood ? 0 : 1;
}
