// The vocabulary of faults, and what each does to a reply.
#include "simulator/host_side.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <tuple>
#include <vector>

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
    // The size of all that is sent, and the number at an offset of it.
    const std::tuple<const char*, std::size_t, std::size_t, std::uint32_t> cases[] = {
        {"sequence=10", 36, 9, 15}, {"command", 36, 0, 0x4C},        {"length=0xFFFFFFFF", 36, 5, 0xFFFFFFFF},
        {"truncate=8", 8, 0, 0x4B}, {"payload=9000", 9016, 5, 9007}, {"patch=16,0x01020304", 36, 29, 0x01020304},
        {"patch=9999,1", 36, 9, 5}, {"result=4", 36, 21, 4},         {"status=3@35*2", 36, 19, 3},
        {"status=3@36", 36, 19, 0},
    };
    for (const auto& [fault, size, offset, number] : cases) {
        Handset handset;
        handset.AddFault(fault);
        const Bytes bytes = host::Sent(Ask(handset));
        EXPECT_EQ(bytes.size(), size) << fault;
        EXPECT_EQ(host::NumberAt(bytes, offset), number) << fault;
    }
    plain.AddFault("check");
    EXPECT_NE(host::Sent(Ask(plain))[33], good[33]);
}

TEST(SimulatorFaults, ChangeWhenAndWhetherItComes)
{
    // "delay+size" of each step, then how the last one ends.
    const std::pair<std::vector<const char*>, const char*> cases[] = {
        {{"silence"}, ""},
        {{"delay=300"}, "300+36 "},
        {{"split=3,9"}, "0+3 50+6 50+27 "},
        {{"delay=5", "split=30,99/7"}, "5+30 7+6 "},
        {{"hangup"}, "0+0 hang up"},
        {{"unplug"}, "0+0 unplug"},
    };
    for (const auto& [faults, expected] : cases) {
        Handset handset;
        for (const char* fault : faults)
            handset.AddFault(fault);
        std::string steps;
        for (const Step& step : Ask(handset)) {
            steps += std::to_string(step.delay.count()) + '+' + std::to_string(step.bytes.size()) + ' ';
            steps += step.kind == Step::Kind::HangUp ? "hang up" : step.kind == Step::Kind::Unplug ? "unplug" : "";
        }
        EXPECT_EQ(steps, expected) << faults.front();
        EXPECT_EQ(handset.Requests(35), 1u) << faults.front();
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
        std::vector<bool> struck(50);
        std::generate(struck.begin(), struck.end(), [&] { return Ask(handset).empty(); });
        return struck;
    };
    EXPECT_EQ(pattern(7), pattern(7));
    EXPECT_NE(pattern(7), pattern(8));
}

TEST(SimulatorFaults, AreWrittenInOneVocabulary)
{
    for (const char* text : {"delay=500@5", "silence%20", "split=3,9/200@6*1", "patch=16,4294967295", "error@at*2"})
        EXPECT_EQ(ToString(ParseFault(text)), text);
    for (const char* text : {"sillence", "delay", "delay=x", "silence=3", "patch=1", "status=1@x", "silence%101"})
        EXPECT_THROW(ParseFault(text), std::invalid_argument) << text;
}

} // namespace
