// The vocabulary of faults, and what each does to a reply.
#include "simulator/host_side.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>

namespace {

using namespace simulator;

const Bytes kRequest = host::Frame(5, host::Record(35, {150})); // an empty slot; the reply's payload is 20 bytes

std::vector<Step> Ask(Handset& handset, const Bytes& request = kRequest)
{
    Session session(handset, PortKind::Diagnostic);
    return session.Receive(request);
}

TEST(SimulatorFaults, ChangeTheReplyAsTheySay)
{
    Handset plain;
    const Bytes good = host::Sent(Ask(plain));
    ASSERT_EQ(good.size(), 36u);
    // The size of all that is sent, and the number at an offset of it.
    const std::tuple<const char*, std::size_t, std::size_t, std::uint32_t> cases[] = {
        {"sequence", 36, 9, 4},
        {"sequence=10", 36, 9, 15},
        {"command", 36, 0, 0x4C},
        {"length=0xFFFFFFFF", 36, 5, 0xFFFFFFFF},
        {"truncate=8", 8, 0, 0x4B},
        {"payload=9000", 9016, 5, 9007},
        {"patch=16,0x01020304", 36, 29, 0x01020304},
        {"patch=9999,1", 36, 9, 5},
        {"status=10", 36, 19, 10},
        {"result=4", 36, 21, 4},
        {"status=3@35*2", 36, 19, 3},
        {"status=3@36", 36, 19, 0},
        {"error", 36, 9, 5},
    };
    for (const auto& [fault, size, offset, number] : cases) {
        Handset handset;
        handset.AddFault(fault);
        const Bytes bytes = host::Sent(Ask(handset));
        EXPECT_EQ(bytes.size(), size) << fault;
        EXPECT_EQ(host::NumberAt(bytes, offset), number) << fault;
    }
    Handset wrongCheck;
    wrongCheck.AddFault("check");
    const Bytes checked = host::Sent(Ask(wrongCheck));
    EXPECT_EQ(Bytes(checked.begin(), checked.begin() + 33), Bytes(good.begin(), good.begin() + 33));
    EXPECT_NE(checked[33], good[33]);
}

TEST(SimulatorFaults, ChangeWhenAndWhetherItComes)
{
    // "delay+size" of each step, then how the last one ends.
    const std::pair<const char*, const char*> cases[] = {
        {"silence", ""},
        {"delay=300", "300+36 "},
        {"split=3,9", "0+3 50+6 50+27 "},
        {"delay=5 split=30,99/7", "5+30 7+6 "},
        {"hangup", "0+0 hang up"},
        {"delay=9 unplug", "9+0 unplug"},
    };
    for (const auto& [faults, expected] : cases) {
        Handset handset;
        std::istringstream words(faults);
        for (std::string fault; words >> fault;)
            handset.AddFault(fault);
        std::string steps;
        for (const Step& step : Ask(handset)) {
            steps += std::to_string(step.delay.count()) + '+' + std::to_string(step.bytes.size()) + ' ';
            steps += step.kind == Step::Kind::HangUp ? "hang up" : step.kind == Step::Kind::Unplug ? "unplug" : "";
        }
        EXPECT_EQ(steps, expected) << faults;
        EXPECT_EQ(handset.Requests(35), 1u) << faults;
    }
}

TEST(SimulatorFaults, RefuseBeforeTheCommandIsCarriedOutAndEndWhenTheyAreUsedUp)
{
    Handset handset;
    handset.AddFault("status=7@38*1");
    const Bytes deleteAll = host::Frame(1, host::Record(38, {}));
    Ask(handset, deleteAll);
    EXPECT_FALSE(handset.Snapshot().contacts.empty());
    EXPECT_TRUE(handset.Faults().empty());
    Ask(handset, deleteAll);
    EXPECT_TRUE(handset.Snapshot().contacts.empty());
}

TEST(SimulatorFaults, StrikeTheSameRequestsAfterTheSameSeed)
{
    const auto pattern = [](std::uint32_t seed) {
        Handset handset;
        handset.Seed(seed);
        handset.AddFault("silence%30");
        std::string struck;
        for (int i = 0; i < 200; ++i)
            struck += Ask(handset).empty() ? '!' : '.';
        return struck;
    };
    EXPECT_EQ(pattern(7), pattern(7));
    EXPECT_NE(pattern(7), pattern(8));
    const std::string struck = pattern(7);
    const auto hits = std::count(struck.begin(), struck.end(), '!');
    EXPECT_GT(hits, 30);
    EXPECT_LT(hits, 90);
}

TEST(SimulatorFaults, AreWrittenInOneVocabulary)
{
    for (const char* text : {"delay=500@5", "silence%20", "split=3,9/200@6*1", "sequence=-3", "patch=16,4294967295",
                             "error@at*2", "unplug@1"})
        EXPECT_EQ(ToString(ParseFault(text)), text);
    for (const char* text : {"", "sillence", "delay", "delay=x", "delay=-1", "silence=3", "split=9,3", "patch=1",
                             "status=1@x", "status=1*0", "silence%101", "length=0x1FFFFFFFF"})
        EXPECT_THROW(ParseFault(text), std::invalid_argument) << text;
}

} // namespace
