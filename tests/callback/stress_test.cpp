// Everything at once: hosts that register, remove and call from several threads, a service that begins and ends, and a
// handset that comes and goes, on the USB port and on a serial one. A few seconds by default; PHNNRV_STRESS_SECONDS
// says how many, PHNNRV_STRESS_SEED which ones. Times run at a fiftieth.
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <future>
#include <random>
#include <thread>

#include "api/handset_fixture.h"
#include "simulator/lines/simulator.h"

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

// A type, which one thread registers and removes, and what its function may count on.
struct Owned
{
    uint32_t type;
    std::atomic<bool> registered = false; // from before it is registered until its removal has returned
    std::atomic<unsigned> calls = 0;
};

std::array<Owned, 4> owned{
    {{PHN_CALLBACK_NETWORK_INFO}, {PHN_CALLBACK_BATTERY_INFO}, {PHN_CALLBACK_SMS}, {PHN_CALLBACK_REMOVED}}};
std::atomic<bool> served = false; // from before the startup until the shutdown has returned
std::atomic<unsigned> wrong = 0;
DWORD loadingThread = 0;
decltype(&PHN_GetBatteryInfo) readBattery = nullptr;

template <size_t index>
void PHN_CALL Changed(uint32_t type)
{
    Owned& mine = owned[index];
    ++mine.calls;
    const bool inPlace = type == PHN_CALLBACK_REMOVED || GetCurrentThreadId() == loadingThread;
    if (type != mine.type || !mine.registered || !served || !inPlace)
        ++wrong;
    PHN_BATTERY_INFO info{};
    info.uSize = sizeof info;
    readBattery(&info);
    if (!mine.registered || !served)
        ++wrong;
}

constexpr std::array<PHN_CALLBACK_FUNCTION, owned.size()> kFunctions{Changed<0>, Changed<1>, Changed<2>, Changed<3>};

uint32_t Setting(const char* name, uint32_t otherwise)
{
    const char* const value = std::getenv(name);
    return value ? static_cast<uint32_t>(std::strtoul(value, nullptr, 10)) : otherwise;
}

using Dice = std::minstd_rand;

class StressTest : public HandsetTest
{
protected:
    StressTest() { setenv("PHNNRV_TIME_SCALE", "0.02", 1); }

    // A host's thread that owns one type.
    void Register(size_t index)
    {
        Dice dice(seed_ + static_cast<uint32_t>(index));
        auto* const setCallback = Find<decltype(PHN_SetCallback)>("PHN_SetCallback");
        auto* const readNetwork = Find<decltype(PHN_GetNetworkInfo)>("PHN_GetNetworkInfo");
        Owned& mine = owned[index];
        while (!over_) {
            mine.registered = true;
            setCallback(static_cast<int32_t>(mine.type), kFunctions[index], 0);
            for (auto calls = dice() % 20; calls > 0; --calls) {
                PHN_NETWORK_INFO info{};
                info.uSize = sizeof info;
                readNetwork(&info);
                std::this_thread::sleep_for(5ms);
            }
            setCallback(static_cast<int32_t>(mine.type), kFunctions[index], 1);
            mine.registered = false;
        }
    }

    // The one that begins and ends the service.
    void Serve()
    {
        Dice dice(seed_ + 100);
        auto* const startup = Find<decltype(PHN_Startup)>("PHN_Startup");
        auto* const shutdown = Find<decltype(PHN_Shutdown)>("PHN_Shutdown");
        while (!over_) {
            served = true;
            startup();
            std::this_thread::sleep_for(std::chrono::milliseconds(dice() % 400));
            // Without a handset it does nothing.
            if (shutdown() != PHN_ERROR_NO_DEVICE)
                served = false;
        }
    }

    // The handset's side: news, faults, and cables that are pulled.
    void Disturb(simulator::Simulator& serial)
    {
        Dice dice(seed_ + 200);
        const char* const faults[] = {"silence*1",  "hangup*1",   "delay=30*3", "status=4@49*1",
                                      "result=3*1", "sequence*1", "check*1",    "split=3,9/5*2"};
        while (!over_) {
            std::this_thread::sleep_for(std::chrono::milliseconds(dice() % 100));
            bench_.Handset().Change(0x01FF, [](simulator::Phone&) {});
            serial.Control().Change(0x01FF, [](simulator::Phone&) {});
            const auto turn = dice() % 8;
            if (turn == 0)
                bench_.Unplug();
            else if (turn <= 2)
                bench_.Plug();
            else if (turn == 3)
                serial.HangUp();
            else if (turn == 4)
                bench_.Handset().AddFault(faults[dice() % std::size(faults)]);
        }
    }

    const uint32_t seed_ = Setting("PHNNRV_STRESS_SEED", 1);
    std::atomic<bool> over_ = false;
};

} // namespace

TEST_F(StressTest, NothingIsCalledThatWasRemovedOrEnded)
{
    bench_.SetLoggingLevel(TestBench::kAllLines & ~1u);
    simulator::Simulator serial(std::getenv("PHNNRV_DEVICES"), "com5");
    serial.Start();
    Load();
    loadingThread = GetCurrentThreadId();
    readBattery = Find<decltype(PHN_GetBatteryInfo)>("PHN_GetBatteryInfo");

    std::vector<std::future<void>> threads;
    const auto start = [&](auto run) { threads.push_back(std::async(std::launch::async, run)); };
    for (size_t index = 0; index < owned.size(); ++index)
        start([this, index] { Register(index); });
    start([this] { Serve(); });
    start([&] { Disturb(serial); });
    const auto polled = [] { return owned[0].calls + owned[1].calls + owned[2].calls; };
    const auto end = steady_clock::now() + std::chrono::seconds(Setting("PHNNRV_STRESS_SECONDS", 3));
    const auto last = end + 30s;
    const auto isEnough = [&] { return steady_clock::now() >= end && polled() && owned[3].calls; };
    Dice dice(seed_ + 300);
    while (!isEnough() && steady_clock::now() < last) {
        const auto pause = steady_clock::now() + std::chrono::milliseconds(dice() % 2000);
        PumpUntil([&] { return steady_clock::now() >= pause; });
        SendMessageA(FindWindowExA(nullptr, nullptr, "PHNNRVDeviceWindow", nullptr), WM_POWERBROADCAST, PBT_APMSUSPEND,
                     0);
    }
    over_ = true;
    EXPECT_TRUE(PumpUntil([&] {
        return std::ranges::all_of(threads,
                                   [](auto& thread) { return thread.wait_for(0s) == std::future_status::ready; });
    })) << "a thread hangs";
    threads.clear();
    EXPECT_EQ(wrong, 0u);
    EXPECT_GT(polled(), 0u);
    EXPECT_GT(owned[3].calls, 0u);
}
