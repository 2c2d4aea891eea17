// The two ways of reading a reply beside each other: what comes of every fault of a handset, and what only the prompt
// way does. Ports are opened as the device object opens them, under a registry that asks for it or does not.
#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "link/device.h"
#include "link/recorded_calls.h"
#include "link/serial_fixture.h"
#include "simulator/handset/fault.h"
#include "simulator/lines/simulator.h"

namespace {

constexpr DWORD kTimeout = 15000; // enough for whatever comes, on any machine
constexpr DWORD kNothing = 300;   // for what never comes
constexpr DWORD kPortLines = 0x806;
constexpr const char* kPrompt = "dword:00000001";
constexpr const char* kSlow = "dword:00000000";
const std::string kContactRequest("\x23\0\0\0\x01\0\x96\0\0\0", 10); // contact 150, which is not there

class PromptReadsTest : public SerialTest
{
protected:
    PromptReadsTest() { g_csDevice.Create(); }
    ~PromptReadsTest() override
    {
        open_.reset();
        g_csDevice.Destroy();
    }

    void Open(const std::string& promptReads)
    {
        log_.SetLevel(kPortLines, promptReads.empty() ? "" : "\"Prompt Reads\"=" + promptReads + "\n");
        open_.reset(); // nobody else may have it open
        open_ = CDevice().OpenDiagPortOnly(PortName());
        ASSERT_TRUE(open_);
    }

    // Sends these bytes and waits until the port has them.
    void Leave(const std::string& bytes)
    {
        Send(bytes);
        DWORD errors = 0;
        for (COMSTAT status{}; status.cbInQue < bytes.size(); Sleep(1))
            ASSERT_TRUE(ClearCommError(Device(), &errors, &status));
    }
};

const std::string kDelivered("\0\0\0\0\0\0\0\0\x11\x22\x7E\0\0\0\0\0\0\0\0\0\0", 21);

const std::string kSilent = "error 997";
const std::string kGivenUp = "Read - Exceeded the maximum loop counter";
const std::string kTooLong = "DecomposeData - Destination buffer";

struct Row
{
    std::string faults;
    std::string outcome; // the last line that tells of the reply, or how many bytes were delivered
    int rereads = 0;     // how often a read that has ended by silence is followed by another
};

const Row kRows[] = {
    {"delay=20", "33 bytes"},
    {"silence", kSilent},
    {"split=1/0", "33 bytes"},
    {"split=16,17/0", "33 bytes"},
    {"split=3,20/100", "33 bytes", 2},
    {"split=22,25/100 patch=8,0x7E7E7E7E", "33 bytes", 2}, // inside of escapes
    {"split=3,9,20/200", kGivenUp, 3},
    {"sequence", "DecomposeData - Expected sequence id(1) does not match the returned sequence id(0)"},
    {"command", "DecomposeData - Sent command(75) is not equal to returned command(76)"},
    {"length=0xFFFFFFFF", kSilent, 1},
    {"length=0", "33 bytes"},
    {"length=12", "33 bytes"},
    {"length=40", kSilent, 1},
    {"check", "33 bytes"},
    {"truncate=2", kSilent, 1},
    {"truncate=8", kSilent, 1},
    {"truncate=35", kSilent, 1},
    {"payload=0", "13 bytes"},
    {"payload=8180", "8193 bytes"},
    {"payload=9000", kTooLong + " size is not enough. Destination buffer = 8193, data read = 9016 - Header = 16"},
    {"payload=60000", "Read - Length of data is greater than buffer. Buffer is 50001 and data length is 50001"},
    {"patch=0,0x7D7E7D7E", "33 bytes"},
    {"status=3", "33 bytes"},
    {"result=4", "33 bytes"},
    {"hangup", "error 31"},
    {"unplug", "error 31"},
};

// What is told of a reply and its end, and what is delivered.
struct Ending
{
    Lines told{""}; // begins so
    std::string delivered{};
};

class FaultyReadsTest : public PromptReadsTest
{
protected:
    FaultyReadsTest() { setenv("PHNNRV_DEVICES", log_.Devices().c_str(), 1); }

    Ending Try(const Row& row, const char* way)
    {
        simulator::Simulator handset(log_.Devices(), "com5");
        handset.Start();
        std::istringstream faults(row.faults);
        for (std::string fault; faults >> fault;)
            handset.Control().AddFault(fault);
        Open(way);
        EXPECT_TRUE(Write(kContactRequest).done);
        const Result result = Read(row.outcome == kSilent ? kNothing : kTimeout);
        Ending ending{{""}, result.bytes};
        for (const std::string& line : log_.TakeLines())
            if (line.find("Last error") == line.npos) // which call a broken line fails is chance
                ending.told.push_back(line);
        if (result.error)
            ending.told.push_back("error " + std::to_string(result.error));
        if (result.done)
            ending.told.push_back(std::to_string(result.length) + " bytes");
        open_->Close();
        return ending;
    }

    // Where a busy machine sets pieces apart that belong together, or the other way round, or keeps a reply back for
    // longer than the time-out, there are more reads or fewer. Only this is tried again.
    Ending EndOf(const Row& row, const char* way)
    {
        for (int tries = 0; tries < 10; ++tries) {
            Ending ending = Try(row, way);
            const auto rereads = std::ranges::count_if(
                ending.told, [](const std::string& line) { return line.find("will reread data") != line.npos; });
            if (rereads == row.rereads)
                return ending;
        }
        ADD_FAILURE() << row.faults << ": always another number of reads";
        return {};
    }
};

} // namespace

TEST_F(FaultyReadsTest, EveryFaultEndsInTheSameBothWays)
{
    for (const simulator::FaultKind& kind : simulator::AllFaultKinds()) {
        const bool isOfAtCommands = kind.name == std::string_view("error");
        EXPECT_NE(isOfAtCommands,
                  std::ranges::any_of(kRows, [&](const Row& row) { return row.faults.starts_with(kind.name); }))
            << kind.name;
    }
    for (const Row& row : kRows) {
        const Ending slow = EndOf(row, kSlow);
        const Ending prompt = EndOf(row, kPrompt);
        EXPECT_EQ(slow.delivered, prompt.delivered) << row.faults;
        EXPECT_EQ(slow.told, prompt.told) << row.faults;
        EXPECT_TRUE(slow.told.back().ends_with(row.outcome)) << row.faults << testing::PrintToString(slow.told);
    }
}

TEST_F(PromptReadsTest, AReplyMayBeSplitAnywhereAndEndsWithItsLastByte)
{
    Open(kPrompt);
    char sequence = 0;
    // Escapes where the shortest frame ends, behind it, and at the payload's end.
    for (const std::string header : {"\x7E\x7E\x7E\x7E\x7E\x7E\x7E\x7E", "......\x7E.", ".......\x7E"}) {
        for (size_t at = 1; at < Reply(0, header).size(); ++at) {
            Ask();
            std::future<Result> read = StartRead(kTimeout);
            const std::string reply = Reply(++sequence, header);
            Send(reply.substr(0, at));
            std::this_thread::sleep_for(std::chrono::milliseconds(1)); // so that a read ends here, as a rule
            Send(reply.substr(at));
            EXPECT_EQ(read.get().bytes, header + kDelivered.substr(8)) << at;
        }
    }
}

// Of many reads: on a busy machine some take longer.
TEST_F(PromptReadsTest, AReadDoesNotWaitForTheSilenceBehindAReply)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds kSilence(10);
    for (const char* const promptReads : {kPrompt, kSlow}) {
        Open(promptReads);
        Clock::duration fastest = Clock::duration::max();
        for (char sequence = 1; sequence <= 20; ++sequence) {
            Ask();
            Leave(Reply(sequence));
            const auto start = Clock::now();
            EXPECT_EQ(Read(kTimeout).bytes, kDelivered);
            fastest = std::min(fastest, Clock::now() - start);
        }
        EXPECT_EQ(fastest < kSilence, promptReads == kPrompt) << promptReads;
    }
}

TEST_F(PromptReadsTest, WhatComesBehindAReplyOrLateIsDroppedBeforeTheNextRequest)
{
    const Lines dropped{"CPort Comment DP::Write - Dropped 24 bytes that were received before the request"};
    Open(kPrompt);
    Ask();
    Leave(Reply(1) + Reply(2)); // at once
    EXPECT_EQ(Read(kTimeout).bytes, kDelivered);
    EXPECT_EQ(log_.TakeLines(), Lines{});

    Ask();
    EXPECT_EQ(log_.TakeLines(), dropped);
    EXPECT_FALSE(Read(kNothing).done);
    log_.TakeLines();
    Leave(Reply(2)); // late

    Ask();
    EXPECT_EQ(log_.TakeLines(), dropped);
    Send(Reply(2) + Reply(3)); // later still, and close behind it the one that was asked for
    EXPECT_FALSE(Read(kTimeout).done);
    EXPECT_EQ(log_.TakeLines(), Lines{"CPort Error DP::DecomposeData - Expected sequence id(3) does not match the "
                                      "returned sequence id(2)"});

    Ask();
    Send(Reply(4));
    EXPECT_EQ(Read(kTimeout).bytes, kDelivered);
    EXPECT_EQ(log_.TakeLines(), Lines{});
}

TEST_F(PromptReadsTest, ALateReplyTakesWithItWhatFlowsOnForLongerThanASilence)
{
    using std::chrono::milliseconds;
    Open(kPrompt);
    Ask();
    for (auto longestPause = milliseconds::max(); longestPause > milliseconds(5); Ask()) { // on a busy machine
        std::future<Result> read = StartRead(kTimeout);
        Send(Reply(0));
        longestPause = {};
        for (int bytes = 0; bytes < 20; ++bytes) {
            const auto start = std::chrono::steady_clock::now();
            std::this_thread::sleep_for(milliseconds(1));
            Send(".");
            longestPause =
                std::max(longestPause, std::chrono::ceil<milliseconds>(std::chrono::steady_clock::now() - start));
        }
        EXPECT_FALSE(read.get().done);
        log_.TakeLines();
    }
    EXPECT_EQ(log_.TakeLines(), Lines{}) << "nothing was left to drop";
}

TEST_F(PromptReadsTest, OnlyWhereTheRegistryAsksForItAnExchangeMakesOtherCalls)
{
    const std::string plain =
        "SetEvent, CloseHandle, CloseHandle, CloseHandle, "     // the port before is closed
        "RegOpenKeyExA 131097, RegQueryValueExA, RegCloseKey, " // the value
        "CreateFileA 3221225472 0 3 1073741824, CreateEventA 1 0, CreateEventA 1 0, "
        "RegQueryValueExA, " // the log's level
        "PurgeComm 15, SetCommTimeouts 10 10 1000 2 10, ClearCommError, "
        "CreateEventA 1 0, WriteFile 17, CloseHandle, "
        "CreateEventA 1 0, ReadFile 50001, WaitForMultipleObjects 2 0 15000, GetOverlappedResult 0, CloseHandle, ";
    const std::pair<const char*, bool> cases[] = {
        {"", false}, {kSlow, false}, {"\"1\"", false}, {kPrompt, true}, {"dword:00000002", true}};
    Open(kPrompt); // and the log
    for (const auto& [value, prompt] : cases) {
        std::string calls;
        recordedCalls = &calls;
        Open(value);
        log_.SetLevel(kPortLines, prompt ? "" : "\"Prompt Reads\"=dword:00000001\n"); // too late
        Ask();
        Send(Reply(1));
        EXPECT_EQ(Read(kTimeout).bytes, kDelivered) << value;
        recordedCalls = nullptr;
        EXPECT_EQ(calls == plain, !prompt) << value << ' ' << calls;
    }
}
