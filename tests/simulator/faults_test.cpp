// The vocabulary of faults, and what each does to a reply.
#include "simulator/host_side.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <tuple>

namespace {

using namespace simulator;
using std::chrono::milliseconds;

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
        {"command=0", 36, 0, 0},
        {"length=0xFFFFFFFF", 36, 5, 0xFFFFFFFF},
        {"truncate=8", 8, 0, 0x4B},
        {"truncate=99", 36, 9, 5},
        {"payload=8", 24, 5, 15},
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
    struct Case
    {
        std::vector<const char*> faults;
        std::vector<std::pair<milliseconds, std::size_t>> sent;
        Step::Kind last;
    };
    const Case cases[] = {
        {{}, {{milliseconds(0), 36}}, Step::Kind::Send},
        {{"silence"}, {}, Step::Kind::Send},
        {{"delay=300"}, {{milliseconds(300), 36}}, Step::Kind::Send},
        {{"split=3,9"}, {{milliseconds(0), 3}, {milliseconds(50), 6}, {milliseconds(50), 27}}, Step::Kind::Send},
        {{"delay=5", "split=30,99/7"}, {{milliseconds(5), 30}, {milliseconds(7), 6}}, Step::Kind::Send},
        {{"hangup"}, {{milliseconds(0), 0}}, Step::Kind::HangUp},
        {{"delay=9", "unplug"}, {{milliseconds(9), 0}}, Step::Kind::Unplug},
    };
    for (const Case& one : cases) {
        Handset handset;
        std::string names;
        for (const char* fault : one.faults) {
            handset.AddFault(fault);
            names.append(fault).append(" ");
        }
        const std::vector<Step> steps = Ask(handset);
        ASSERT_EQ(steps.size(), one.sent.size()) << names;
        for (std::size_t i = 0; i < steps.size(); ++i) {
            EXPECT_EQ(steps[i].delay, one.sent[i].first) << names;
            EXPECT_EQ(steps[i].bytes.size(), one.sent[i].second) << names;
            EXPECT_EQ(steps[i].kind, one.last) << names;
        }
        EXPECT_EQ(handset.Requests(35), 1u) << names;
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
    for (const char* text :
         {"", "sillence", "delay", "delay=", "delay=x", "delay=-1", "silence=3", "split", "split=9,3", "patch=1",
          "status=1@x", "status=1*0", "silence%101", "length=0x1FFFFFFFF", "delay=1,2"})
        EXPECT_THROW(ParseFault(text), std::invalid_argument) << text;
}

} // namespace
