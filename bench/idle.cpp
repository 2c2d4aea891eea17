// What a host that only dispatches messages costs while a handset is open: processor time on a USB port, on a serial
// port, and the exchanges of registered callbacks. The handset lives in a process of its own. PHNNRV_IDLE_SECONDS says
// how long each is watched (20); the limits are per minute.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <windows.h>

#include "figure.h"
#include "phnnrv.h"
#include "simulator/lines/device_directory.h"
#include "simulator/lines/simulator.h"

namespace {

struct Setting
{
    const char* title;
    bool isUsb;
    bool hasCallbacks;
    double limit; // ms of processor time per minute
};

// The polls themselves cost what thirty exchanges cost.
constexpr Setting kSettings[]{
    {"idle, USB handset, no callbacks", true, false, 10},
    {"idle, serial handset, no callbacks", false, false, 20},
    {"USB handset, all callbacks registered", true, true, 60},
};

// Serves a handset until the pipe is closed; answers every byte with the number of requests so far.
[[noreturn]] void ServeHandset(const std::filesystem::path& devices, const Setting& setting, int in, int out)
{
    simulator::Simulator handset(devices, setting.isUsb ? simulator::UsbInterfaceName("0001") : "com5");
    handset.Start();
    char question = 0;
    do {
        const std::uint64_t requests = handset.Control().Requests();
        if (write(out, &requests, sizeof requests) != sizeof requests)
            break;
    } while (read(in, &question, 1) == 1);
    handset.Stop();
    _exit(0);
}

class HandsetProcess
{
public:
    HandsetProcess(const std::filesystem::path& devices, const Setting& setting)
    {
        std::array<int, 2> ask;
        std::array<int, 2> answer;
        if (pipe(ask.data()) || pipe(answer.data()))
            std::abort();
        process_ = fork();
        if (process_ == 0) {
            close(ask[1]);
            close(answer[0]);
            ServeHandset(devices, setting, ask[0], answer[1]);
        }
        close(ask[0]);
        close(answer[1]);
        ask_ = ask[1];
        answer_ = answer[0];
        ReadCount();
    }
    ~HandsetProcess()
    {
        close(ask_);
        waitpid(process_, nullptr, 0);
        close(answer_);
    }
    HandsetProcess(const HandsetProcess&) = delete;
    HandsetProcess& operator=(const HandsetProcess&) = delete;

    std::uint64_t Requests() const { return write(ask_, "?", 1) == 1 ? ReadCount() : 0; }

private:
    std::uint64_t ReadCount() const
    {
        std::uint64_t count = 0;
        return read(answer_, &count, sizeof count) == sizeof count ? count : 0;
    }

    pid_t process_;
    int ask_;
    int answer_;
};

double ProcessorMilliseconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto milliseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

void DispatchFor(UINT milliseconds)
{
    const UINT_PTR timer = SetTimer(nullptr, 0, milliseconds, nullptr);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        if (!message.hwnd && message.message == WM_TIMER && message.wParam == timer)
            break;
        DispatchMessageA(&message);
    }
    KillTimer(nullptr, timer);
}

void Ignore(uint32_t) {}

bool Measure(const Setting& setting, unsigned seconds)
{
    const simulator::DeviceDirectory devices;
    setenv("PHNNRV_DEVICES", devices.Path().c_str(), 1);
    setenv("PHNNRV_REGISTRY", (devices.Path() / "none.reg").c_str(), 1);
    const HandsetProcess handset(devices.Path(), setting);
    const HMODULE library = LoadLibraryA("PHNNRV.dll");
    const auto find = [&](const char* name) { return reinterpret_cast<void*>(GetProcAddress(library, name)); };
    if (!library || reinterpret_cast<decltype(&PHN_Startup)>(find("PHN_Startup"))() != PHN_ERROR_NONE) {
        std::fputs("bench_idle: no handset\n", stderr);
        return false;
    }
    if (setting.hasCallbacks)
        reinterpret_cast<decltype(&PHN_SetCallback)>(find("PHN_SetCallback"))(PHN_CALLBACK_ALL, Ignore, 0);
    DispatchFor(500);
    const std::uint64_t requests = handset.Requests();
    const double start = ProcessorMilliseconds();
    DispatchFor(seconds * 1000);
    const double perMinute = (ProcessorMilliseconds() - start) * 60 / seconds;
    const double exchanges = static_cast<double>(handset.Requests() - requests);
    FreeLibrary(library);
    const double expected = setting.hasCallbacks ? seconds / 2.0 : 0;
    const bool isBelow =
        bench::Judge({.what = setting.title, .value = perMinute, .unit = "ms/min", .limit = setting.limit});
    const bool areRight = std::abs(exchanges - expected) <= 1;
    std::printf("    %.0f exchanges in %u s (%.0f)  %s\n", exchanges, seconds, expected, areRight ? "ok" : "MISSED");
    return isBelow && areRight;
}

} // namespace

int main()
{
    const char* const wanted = std::getenv("PHNNRV_IDLE_SECONDS");
    const unsigned seconds = wanted ? static_cast<unsigned>(std::strtoul(wanted, nullptr, 10)) : 20;
    bool isGood = true;
    for (const Setting& setting : kSettings) {
        std::fflush(stdout);
        // A process of its own, that may still fork.
        const pid_t process = fork();
        if (process == 0) {
            const bool isMet = Measure(setting, seconds);
            std::fflush(stdout);
            std::_Exit(isMet ? 0 : 1);
        }
        int status = 0;
        waitpid(process, &status, 0);
        isGood = isGood && status == 0;
    }
    return isGood ? 0 : 1;
}
