// A handset on a plain serial port that stops answering: the watch thread finds the loss, and tells it.
#include "api/handset_fixture.h"
#include "callback/host_functions.h"
#include "phn_platform_test.h"
#include "simulator/simulator.h"

namespace {

using platform_test::AdvanceClock;
using platform_test::AwaitBlocked;

constexpr DWORD kCycle = 15000;
constexpr DWORD kProbe = 3000;

using WatchLossTest = HandsetTest;

} // namespace

TEST_F(WatchLossTest, TheWatchThreadTellsTheLossAtItsSeventhCycleBeforeTheServicesGo)
{
    simulator::Simulator serial(std::getenv("PHNNRV_DEVICES"), "com5");
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
