// The dialogue of a modem port, with one answer cut at a byte, and then silence, the rest, a hang-up or garbage: it
// ends in time, the port is released whole or open, and the next dialogue works. A read that got a byte ends by
// silence, and what came is good unless it says ERROR; one that got none ends when the handset goes.
#include <thread>
#include <tuple>

#include "device/device_world.h"
#include "hostile/cut_line.h"
#include "hostile/cut_sample.h"

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr double kScale = 0.002;       // the silence that ends a read, 14 ms, is shorter than kPause
constexpr auto kBound = 3 * (8s + 7s); // of a dialogue whose answers come at once: three requests and silences
constexpr auto kBusy = 2s;             // that a machine with no time for it may take in all, unscaled

using Case = std::tuple<Ending, bool>; // and whether the answer says ERROR

class CutAnswersTest : public DeviceTest, public testing::WithParamInterface<Case>
{
protected:
    CutAnswersTest()
    {
        setenv("PHNNRV_TIME_SCALE", std::to_string(kScale).c_str(), 1);
        Create();
    }

    // A dialogue as it should be: what its answers are long.
    std::vector<std::size_t> Rehearse()
    {
        modem_.Start();
        line_.TakeSizes();
        EXPECT_TRUE(Open());
        EXPECT_TRUE(Device().CheckPort());
        Device().ClosePort();
        return line_.TakeSizes();
    }

    void Run(const Cut& cut)
    {
        modem_.Unplug(); // the next line echoes again
        modem_.Start();
        line_.Arm(cut);
        std::thread owner([&] {
            if (line_.AwaitVerdict() == Verdict::Missing && cut.ending == Ending::Silence)
                modem_.Unplug();
        });
        const auto begin = steady_clock::now();
        const bool isOpen = Open();
        const auto took = steady_clock::now() - begin;
        owner.join();
        const std::optional<Verdict> verdict = line_.AwaitVerdict();
        line_.Arm(std::nullopt);
        ASSERT_TRUE(verdict) << "the answer was never asked for";
        EXPECT_LE(took, kBound * kScale + kBusy);
        EXPECT_EQ(isOpen, IsOpen());
        EXPECT_EQ(isOpen, Device().GetPort() != nullptr);
        ExpectOpen(cut, *verdict, isOpen);
        if (isOpen) {
            EXPECT_TRUE(Device().CheckPort());
        }
        Device().ClosePort();
        Rehearse();
    }

private:
    bool Open() { return Device().ScanforDevices(kModemInterface); }

    static void ExpectOpen(const Cut& cut, Verdict verdict, bool isOpen)
    {
        const bool isSplit = cut.ending == Ending::TheRestLater && cut.saysError; // maybe between two letters of it
        if (verdict == Verdict::Refused || cut.ending == Ending::HangUp) {
            EXPECT_FALSE(isOpen);
        } else if (verdict == Verdict::Missing) {
            EXPECT_EQ(isOpen, cut.ending == Ending::TheRestLater && !cut.saysError);
        } else if (!isSplit) {
            EXPECT_TRUE(isOpen);
        }
    }

    CutLine line_{simulator::PortKind::Modem};
    simulator::Simulator modem_{line_.Opener(log_.Devices(), simulator::ModemInterfaceName("0001")), line_.Maker()};
};

} // namespace

TEST_P(CutAnswersTest, EndTheDialogueInTimeAndTheNextOneWorks)
{
    constexpr std::size_t kMoreLetters = 3; // of ERROR than of OK
    const auto [ending, saysError] = GetParam();
    std::vector<std::size_t> sizes = Rehearse();
    sizes.pop_back(); // of the check
    ASSERT_EQ(sizes.size(), 3u);
    CutSample sample;
    for (std::size_t exchange = 0; exchange < sizes.size(); ++exchange) {
        for (std::size_t at = 0; at < sizes[exchange] + (saysError ? kMoreLetters : 0); ++at) {
            if (!sample.Take())
                continue;
            SCOPED_TRACE("exchange " + std::to_string(exchange) + ", byte " + std::to_string(at) + "; " +
                         sample.Text());
            Run({exchange, at, ending, static_cast<std::uint32_t>(at), saysError});
            ASSERT_FALSE(HasFatalFailure());
        }
    }
    std::printf("%u cut answers, %s\n", sample.Taken(), sample.Text().c_str());
}

INSTANTIATE_TEST_SUITE_P(All, CutAnswersTest,
                         testing::Combine(testing::Values(Ending::Silence, Ending::TheRestLater, Ending::HangUp,
                                                          Ending::Garbage),
                                          testing::Bool()));
