#include "link/diagnostic_port.h"

#include <phn_platform_test.h>

#include <thread>
#include <tuple>

#include "link/exec_command.h"
#include "link/serial_fixture.h"

namespace {

constexpr COMMTIMEOUTS kTimeouts{10, 10, 1000, 2, 10};

class DiagnosticPortTest : public SerialTest
{
protected:
    void SetUp() override { Open(); }
    ~DiagnosticPortTest() override { platform_test::ClearFailures(); }

    void Open() { Use(std::make_unique<DP>(PortName()), FILE_FLAG_OVERLAPPED, kTimeouts); }
};

} // namespace

TEST_F(DiagnosticPortTest, ASilentHandsetCostsOneTimeOutAndLeavesACleanLine)
{
    CreateCommandLock();
    char reply[21];
    DWORD length = 0;
    DWORD error = 0;
    std::thread exchange([&] {
        EXPECT_FALSE(ExecCmd(Device(), kRequest.data(), 6, reply, sizeof reply, &length, &error, 15000, open_.get()));
    });
    EXPECT_EQ(Receive(17).size(), 17u);
    EXPECT_TRUE(platform_test::AwaitBlocked(15000));
    platform_test::AdvanceClock(15000);
    exchange.join();
    DestroyCommandLock();
    EXPECT_EQ(error, DWORD{ERROR_IO_PENDING});
    EXPECT_EQ(log_.TakeLines(),
              (Lines{"CPort Error DP::Read - WaitForSingleObject failed. Last error is 0x3E5",
                     "readwrite Error ReadDevice - pInstance->m_pDeviceObject->GetPort()->Read returned false.",
                     "readwrite Error ExecCmd - Reading from the device failed"}));

    // The late reply fails the exchange that meets it; the next one works.
    Send(Reply(1));
    EXPECT_EQ(Ask(), 2);
    EXPECT_FALSE(Read(15000).done);
    EXPECT_EQ(log_.TakeLines().back(),
              "CPort Error DP::DecomposeData - Expected sequence id(2) does not match the returned sequence id(1)");
    EXPECT_EQ(Ask(), 3);
    Send(Reply(3));
    EXPECT_TRUE(Read(15000).done);
}

TEST_F(DiagnosticPortTest, ClosingOrUnloadingEndsARead)
{
    g_evStop = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    for (const bool unload : {false, true}) {
        std::future<Result> read = StartRead(15000);
        EXPECT_TRUE(platform_test::AwaitBlocked(15000));
        if (unload)
            SetEvent(g_evStop);
        else
            open_->Close();
        EXPECT_EQ(read.get().error, DWORD{ERROR_OPERATION_ABORTED});
        EXPECT_EQ(log_.TakeLines(), (Lines{"CPort Error DP::Read - WaitForSingleObject failed. Last error is 0x3E3"}));
        open_->Close();
        Open(); // at once
    }
    CloseHandle(std::exchange(g_evStop, nullptr));
}

TEST_F(DiagnosticPortTest, AHandleThatIsNotThePortsFailsLikeAClosedOne)
{
    const HANDLE other = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    for (const HANDLE handle : {other, HANDLE{nullptr}, Device()}) {
        if (handle == Device())
            open_->Close();
        char buffer[21];
        DWORD length = 0;
        DWORD errors[2] = {};
        EXPECT_FALSE(open_->Write(handle, kRequest.data(), 6, &length, &errors[0]));
        EXPECT_FALSE(open_->Read(handle, buffer, sizeof buffer, &length, &errors[1], 15000));
        EXPECT_TRUE(errors[0] == ERROR_INVALID_HANDLE && errors[1] == ERROR_INVALID_HANDLE);
        EXPECT_EQ(log_.TakeLines(), (Lines{"CPort Error DP::Write - WriteFile failed. Last error is 0x6",
                                           "CPort Error DP::Read - ReadFile failed. Last error is 0x6"}));
    }
    CloseHandle(other);
}

TEST_F(DiagnosticPortTest, AnEndlessReplyIsGivenUp)
{
    const std::string expected =
        "CPort Error DP::Read - Length of data is greater than buffer. Buffer is 50001 and data length is 50001";
    std::string last;
    for (int tries = 0; tries < 3 && last != expected; ++tries) { // a busy machine may read it in pieces
        open_->Close();
        Open();
        EXPECT_EQ(Ask(), 1);
        std::future<Result> read = StartRead(1000);
        Send(std::string(50001, '\x7D')); // half as much when decoded: it is the received bytes that count
        EXPECT_FALSE(read.get().done);
        last = log_.TakeLines().back();
    }
    EXPECT_EQ(last, expected);
}

TEST_F(DiagnosticPortTest, EachSystemCallsFailureHasItsLine)
{
    const std::tuple<const char*, DWORD, bool, const char*> cases[] = {
        {"CreateEventA", 0, true, "DP::Write - Unable to create the event"},
        {"WriteFile", 31, true, "DP::Write - WriteFile failed. Last error is 0x1F"},
        {"CreateEventA", 0, false, "DP::Read  - Unable to create the event"},
        {"ReadFile", 31, false, "DP::Read - ReadFile failed. Last error is 0x1F"},
        {"WaitForMultipleObjects", 87, false, "DP::Read - WaitForSingleObject failed. Last error is 0x57"},
    };
    for (const auto& [call, error, writing, line] : cases) {
        platform_test::FailCall(call, error ? error : 8);
        const Result result = writing ? Write(kRequest) : Read(15000);
        EXPECT_FALSE(result.done) << line;
        EXPECT_EQ(result.error, error) << line;
        EXPECT_EQ(platform_test::PendingFailures(call), 0u) << line;
        EXPECT_EQ(log_.TakeLines(), Lines{std::string("CPort Error ") + line});
    }

    // A read that is over, but whose result cannot be had.
    const char sequence = Ask();
    std::future<Result> read = StartRead(15000);
    EXPECT_TRUE(platform_test::AwaitBlocked(15000));
    platform_test::FailCall("GetOverlappedResult", 31);
    Send(Reply(sequence));
    EXPECT_EQ(read.get().error, 31u);
    EXPECT_EQ(log_.TakeLines(), (Lines{"CPort Error DP::Read - GetOverlappedResult failed. Last error is 0x1F"}));
}
