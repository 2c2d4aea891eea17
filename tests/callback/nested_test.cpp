// Losses, and host functions that dispatch messages: what arrives inside them is handled before they return.
#include "api/handset_fixture.h"
#include "callback/host_functions.h"
#include "phn_platform_test.h"
#include "simulator/lines/simulator.h"

namespace {

using platform_test::AdvanceClock;
using platform_test::AwaitBlocked;
using simulator::UsbInterfaceName;
using Types = std::vector<uint32_t>;

constexpr DWORD kPoll = 2000;
constexpr DWORD kProbe = 3000;
constexpr DWORD kCycle = 15000;

class NestedTest : public HandsetTest
{
protected:
    ~NestedTest() override
    {
        SetAction({});
        TakeTypes();
    }

    bool IsOpenUnserved() const { return Battery() == PHN_ERROR_NO_SERVICE_OBJECT; }

    // The removal function plugs a handset in and dispatches messages until its port is open.
    void PlugInWhenTold(simulator::Simulator& next)
    {
        ASSERT_EQ(CALL(PHN_SetCallback)(PHN_CALLBACK_REMOVED, Tell, 0), PHN_ERROR_NONE);
        SetAction([&](uint32_t) {
            next.Start();
            EXPECT_TRUE(PumpUntil([this] { return IsOpenUnserved(); }));
        });
    }

    // After a loss in which another handset was plugged in: it was told once, and the other is there and can be lost.
    void ExpectServedBy(simulator::Simulator& next)
    {
        EXPECT_EQ(TakeTypes(), Types{PHN_CALLBACK_REMOVED});
        EXPECT_TRUE(IsOpenUnserved());
        EXPECT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
        EXPECT_EQ(next.Control().Requests(6), 1u);
        next.Unplug();
        EXPECT_TRUE(PumpUntil([this] { return Battery() == PHN_ERROR_NO_DEVICE; }));
    }

    // Lets the time of a probe pass while messages are dispatched until the condition holds.
    void PumpWhileAProbeFails(const std::function<bool()>& condition)
    {
        std::thread clock([] {
            EXPECT_TRUE(AwaitBlocked(kProbe));
            AdvanceClock(kProbe);
        });
        EXPECT_TRUE(PumpUntil(condition));
        clock.join();
    }
};

} // namespace

TEST_F(NestedTest, AHandsetThatArrivesWhileALossIsToldStays)
{
    simulator::Simulator next(bench_.Devices(), UsbInterfaceName("0002"));
    StartService();
    PlugInWhenTold(next);
    bench_.Unplug();
    ASSERT_TRUE(PumpUntil([&] { return IsOpenUnserved(); }));
    ExpectServedBy(next);
}

TEST_F(NestedTest, AHandsetThatArrivesWhileTheLossOfADeadOneIsToldStays)
{
    simulator::Simulator next(bench_.Devices(), UsbInterfaceName("0002"));
    simulator::Simulator late(bench_.Devices(), UsbInterfaceName("0003"));
    StartService();
    PlugInWhenTold(next);
    bench_.Handset().AddFault("silence@1"); // to the greeting that is the probe, and to nothing else
    late.Start();
    PumpWhileAProbeFails([&] { return IsOpenUnserved(); });
    ExpectServedBy(next);
}

TEST_F(NestedTest, AHandsetThatArrivesWhileASuspendDropsASerialOneStays)
{
    simulator::Simulator serial(bench_.Devices(), "com5");
    simulator::Simulator next(bench_.Devices(), UsbInterfaceName("0002"));
    serial.Start();
    Load();
    AdvanceClock(300);
    ASSERT_TRUE(PumpUntil([&] { return IsOpenUnserved(); }));
    ASSERT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    PlugInWhenTold(next);
    SendMessageA(FindWindowExA(nullptr, nullptr, "PHNNRVDeviceWindow", nullptr), WM_POWERBROADCAST, 4, 0);
    ExpectServedBy(next);
}

TEST_F(NestedTest, AnArrivalThatCannotBeOpenedInPlaceOfADeadHandsetLeavesTheSearchOn)
{
    StartService();
    RunFor(300);
    ASSERT_TRUE(AwaitBlocked(kCycle));
    bench_.Handset().AddFault("silence@1"); // to the greeting that is the probe, and to nothing else
    std::filesystem::create_symlink("nowhere", bench_.Devices() / UsbInterfaceName("0002"));
    PumpWhileAProbeFails([&] { return Battery() == PHN_ERROR_NO_DEVICE; });
    simulator::Simulator serial(bench_.Devices(), "com5");
    serial.Start();
    AdvanceClock(kCycle);
    EXPECT_TRUE(PumpUntil([&] { return IsOpenUnserved(); }));
    EXPECT_EQ(serial.Control().Requests(1), 1u);
}

TEST_F(NestedTest, ATickInAFunctionThatDispatchesMessagesWaitsForTheNextOne)
{
    StartService();
    const auto report = [&] { bench_.Handset().Change(0, [](simulator::Phone& phone) { phone.variance = 0x0080; }); };
    unsigned depth = 0;
    unsigned deepest = 0;
    SetAction([&](uint32_t) {
        deepest = std::max(deepest, ++depth);
        report();
        if (depth == 1)
            RunFor(kPoll);
        --depth;
    });
    ASSERT_EQ(CALL(PHN_SetCallback)(PHN_CALLBACK_SMS, Tell, 0), PHN_ERROR_NONE);
    report();
    RunFor(kPoll + 50);
    EXPECT_FALSE(TakeTypes().empty());
    EXPECT_EQ(deepest, 1u);
    SetAction({});
    RunFor(kPoll + 50);
    EXPECT_FALSE(TakeTypes().empty()) << "what the function saw reported is told by a later tick";
}

// The thread that finds the loss of a handset on a plain serial port tells it.
TEST_F(NestedTest, TheWatchThreadTellsTheLossAtItsSeventhCycleBeforeTheServicesGo)
{
    simulator::Simulator serial(bench_.Devices(), "com5");
    serial.Start();
    Load();
    AdvanceClock(300);
    ASSERT_TRUE(PumpUntil([&] { return serial.Control().Requests(1) == 1; })) << "no scan";
    ASSERT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    ASSERT_EQ(CALL(PHN_SetCallback)(PHN_CALLBACK_REMOVED, Tell, 0), PHN_ERROR_NONE);
    PHN_ERROR inside = PHN_ERROR_NONE;
    SetAction([&](uint32_t) { inside = CALL(PHN_GetNetworkErrorString)(0, std::string(40, ' ').data(), 40); });
    serial.Control().AddFault("silence");
    for (int cycle = 1; cycle <= 7; ++cycle) {
        ASSERT_TRUE(AwaitBlocked(kCycle));
        ASSERT_TRUE(TakeTypes().empty()) << cycle;
        AdvanceClock(kCycle);
    }
    ASSERT_TRUE(AwaitBlocked(kProbe));
    AdvanceClock(kProbe);

    // The same thread then scans, and finds the port as silent as before.
    ASSERT_TRUE(AwaitBlocked(kProbe));
    AdvanceClock(kProbe);
    const std::vector<Told> told = TakeTold();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].type, uint32_t{PHN_CALLBACK_REMOVED});
    EXPECT_NE(told[0].thread, GetCurrentThreadId());
    EXPECT_EQ(inside, PHN_ERROR_INVALID_PARAMETER) << "the service object was there, the code has no text";
    SetAction({});
    EXPECT_EQ(CALL(PHN_Shutdown)(), PHN_ERROR_NO_DEVICE);
}
