// Every reply of the wire, cut at every byte, and then silence, the rest, a hang-up or garbage: the call ends with the
// code that is documented for it, within its bound, and the next exchange works. All of them take minutes.
#include <chrono>
#include <string>
#include <thread>
#include <tuple>

#include "api/handset_fixture.h"
#include "hostile/cut_line.h"
#include "hostile/cut_sample.h"
#include "phn_platform_test.h"
#include "phnnrv.hpp"
#include "support/usage.h"

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr double kScale = 0.3; // so that no exchange that is good runs out of time on a busy machine
constexpr DWORD kWatchCycle = 15000;

using Case = std::tuple<Ending, bool>; // and whether reads are prompt

class CutRepliesTest : public HandsetTest, public testing::WithParamInterface<Case>
{
protected:
    CutRepliesTest()
    {
        setenv("PHNNRV_TIME_SCALE", std::to_string(kScale).c_str(), 1);
        setenv("PHNNRV_PROMPT_READS", std::get<1>(GetParam()) ? "1" : "0", 1);
        simulator_.Start();
        Load();
        RunFor(300); // the watch thread runs from here on
        calls_ = HostCalls([this](const char* name) { return FindAddress(name); });
    }

    // A call as it is when nothing is wrong: how long its replies are.
    std::vector<std::size_t> Rehearse(const HostCall& call)
    {
        Begin(call);
        line_.TakeSizes();
        EXPECT_EQ(call.call(), call.success) << call.name;
        const std::vector<std::size_t> sizes = line_.TakeSizes();
        EXPECT_EQ(sizes.size(), call.exchanges.size()) << call.name;
        return sizes;
    }

    void Run(const HostCall& call, const Cut& cut)
    {
        Begin(call);
        line_.Arm(cut);
        std::thread clock([&] { EndSilence(call.exchanges[cut.exchange].command); });
        const auto begin = steady_clock::now();
        const std::uint32_t code = call.call();
        const std::chrono::duration<double, std::milli> took = steady_clock::now() - begin;
        clock.join();
        const std::optional<Verdict> verdict = line_.AwaitVerdict();
        line_.Arm(std::nullopt);
        ASSERT_TRUE(verdict) << "the reply was never asked for";
        EXPECT_LE(took, call.Bound() * kScale);
        ExpectCode(call, cut, *verdict, code);
    }

private:
    void Begin(const HostCall& call)
    {
        simulator_.Control().Change(0, [&](simulator::Phone& phone) {
            phone = simulator::DefaultPhone();
            call.arrange(phone);
        });
        const Ending ending = std::get<0>(GetParam());
        if (ending == Ending::Garbage) // what it has told of the handset is forgotten
            CALL(PHN_Shutdown)();
        const bool mayHaveEnded = !isStarted_ || ending == Ending::HangUp || ending == Ending::Garbage;
        if (const PHN_ERROR code = Battery()) {
            ASSERT_TRUE(mayHaveEnded) << "the next exchange fails: " << code;
            ASSERT_TRUE(PumpUntil([this] { return CALL(PHN_Startup)() == PHN_ERROR_NONE; })) << "no exchange works";
        }
        isStarted_ = call.name != "PHN_Startup" && call.name != "PHN_Shutdown";
        call.prepare();
    }

    // Lets the time pass once the call waits for bytes that never come. Those that came have ended its first read by
    // then: that takes a silence of real time.
    void EndSilence(std::uint32_t command)
    {
        const Ending ending = std::get<0>(GetParam());
        const bool mayBeSilent = ending == Ending::Silence || ending == Ending::Garbage;
        if (line_.AwaitVerdict() != Verdict::Missing || !mayBeSilent)
            return;
        std::this_thread::sleep_for(kPause);
        const auto timeout = static_cast<DWORD>(ReadTimeout(command).count());
        EXPECT_TRUE(platform_test::AwaitBlocked(timeout, timeout == kWatchCycle ? 2 : 1)) << "nobody waits";
        platform_test::AdvanceClock(timeout);
    }

    static void ExpectCode(const HostCall& call, const Cut& cut, Verdict verdict, std::uint32_t code)
    {
        const auto [command, failure] = call.exchanges[cut.exchange];
        // The greeting's answer is not looked at, nor is the result of command 33; the end of a list leads to the next.
        const bool mayBeRefused =
            command == 1 || command == 33 || failure == call.success || cut.exchange + 1 < call.exchanges.size();
        if (cut.ending == Ending::TheRestLater) {
            EXPECT_EQ(code, call.success);
        } else if (verdict == Verdict::Missing || verdict == Verdict::Foreign) {
            EXPECT_TRUE(code == failure || (verdict == Verdict::Foreign && mayBeRefused)) << code;
        } else if (verdict == Verdict::Refused && !mayBeRefused) {
            EXPECT_NE(code, call.success);
            EXPECT_NE(phnnrv::Error{code}.name(), "") << code;
        } else if (verdict == Verdict::Whole &&
                   !call.name.ends_with("Count")) { // the record is as damaged as what it says
            EXPECT_TRUE(code == call.success || code == failure || code == NothingOf(call.name)) << code;
        }
    }

    // What a call gives to whom the reply says that nothing is there.
    static std::uint32_t NothingOf(const std::string& name)
    {
        if (name.ends_with("CallEntry"))
            return PHN_ERROR_NO_MORE_ENTRIES;
        return name.ends_with("Message") ? PHN_ERROR_NO_MORE_MESSAGES : PHN_ERROR_NOT_FOUND;
    }

    bool isStarted_ = false; // whatever came of the last call
    CutLine line_;
    simulator::Simulator simulator_{line_.Opener(bench_.Devices(), simulator::UsbInterfaceName("0001")), line_.Maker()};

protected:
    std::vector<HostCall> calls_;
    CutSample sample_;
};

} // namespace

TEST_P(CutRepliesTest, EndWithTheirCodeAndTheNextExchangeWorks)
{
    std::optional<Usage> before;
    for (const HostCall& call : calls_) {
        const std::vector<std::size_t> sizes = Rehearse(call);
        ASSERT_FALSE(HasFailure());
        for (std::size_t exchange = 0; exchange < sizes.size(); ++exchange) {
            for (std::size_t at = 0; at < sizes[exchange]; ++at) {
                if (!sample_.Take())
                    continue;
                SCOPED_TRACE(call.name + ", exchange " + std::to_string(exchange) + ", byte " + std::to_string(at) +
                             "; " + sample_.Text());
                Run(call, {exchange, at, std::get<0>(GetParam()), static_cast<std::uint32_t>(at)});
                ASSERT_FALSE(HasFatalFailure());
            }
        }
        Rehearse(calls_.front());
        const Usage after;
        EXPECT_EQ(after.threads, before.value_or(after).threads) << call.name;
        EXPECT_EQ(after.descriptors, before.value_or(after).descriptors) << call.name;
        before = after;
    }
    std::printf("%u cut replies, %s\n", sample_.Taken(), sample_.Text().c_str());
}

INSTANTIATE_TEST_SUITE_P(All, CutRepliesTest,
                         testing::Combine(testing::Values(Ending::Silence, Ending::TheRestLater, Ending::HangUp,
                                                          Ending::Garbage),
                                          testing::Bool()));
