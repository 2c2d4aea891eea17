// Prompt reads over a port of the system's own, beside the default ones.
#include <algorithm>

#include "api/handset_fixture.h"
#include "windows/driver.h"

namespace {

using Clock = std::chrono::steady_clock;

class PromptReadsTest : public HandsetTest
{
protected:
    ~PromptReadsTest() override { driver::SetPromptReads(false); }

    // Of many exchanges: on a busy machine some take longer.
    Clock::duration Fastest() const
    {
        Clock::duration fastest = Clock::duration::max();
        for (int i = 0; i < 50; ++i) {
            const auto start = Clock::now();
            EXPECT_EQ(Battery(), PHN_ERROR_NONE);
            fastest = std::min(fastest, Clock::now() - start);
        }
        return fastest;
    }
};

constexpr auto kSilence = std::chrono::milliseconds(10);

} // namespace

TEST_F(PromptReadsTest, AnExchangeWaitsForNoSilenceWhereTheRegistryAsksForIt)
{
    driver::SetPromptReads(true);
    StartService();
    EXPECT_LT(Fastest(), kSilence);
    bench_.Handset().AddFault("split=16,20/5*1");
    EXPECT_EQ(Battery(), PHN_ERROR_NONE);
    bench_.Handset().AddFault("sequence*1");
    EXPECT_EQ(Battery(), PHN_ERROR_FAILED);
    EXPECT_EQ(Battery(), PHN_ERROR_NONE) << "nothing of the reply before is left";
    Unload();
    driver::SetPromptReads(false);
    StartService();
    EXPECT_GE(Fastest(), kSilence);
}
