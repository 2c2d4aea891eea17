#include "link/modem_port.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "link/serial_fixture.h"
#include "phn_platform_test.h"

namespace {

class ModemPortTest : public SerialTest
{
protected:
    void SetUp() override { Use(std::make_unique<MP>(PortName()), 0, {7000, 7000, 1000, 2, 8000}); }

    // Waits until as many bytes lie in the port, not yet read.
    bool AwaitUnread(int count)
    {
        const int terminal = open((farEnd->directory / "com5").c_str(), O_RDWR | O_NOCTTY);
        int unread = -1;
        for (int tries = 0; tries < 10000 && unread != count; ++tries) {
            ioctl(terminal, FIONREAD, &unread);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        close(terminal);
        return unread == count;
    }
};

} // namespace

TEST_F(ModemPortTest, BytesPassUnchanged)
{
    EXPECT_TRUE(Write("AT~}\r").done);
    EXPECT_EQ(Receive(5), "AT~}\r");
    Send("OK\r\n}~");
    ASSERT_TRUE(AwaitUnread(6));
    EXPECT_EQ(Read(0, 6).bytes, "OK\r\n}~"); // a full buffer ends a read
    COMMTIMEOUTS soon{10, 0, 20, 0, 0};
    SetCommTimeouts(Device(), &soon);
    Send("AT");
    ASSERT_TRUE(AwaitUnread(2));
    EXPECT_EQ(Read(0).bytes, "AT"); // and silence
    EXPECT_EQ(log_.TakeLines(), Lines());
}

TEST_F(ModemPortTest, ClosingEndsAReadThatIsUnderWay)
{
    Send("x");
    ASSERT_TRUE(AwaitUnread(1));
    std::future<Result> read = StartRead(0);
    ASSERT_TRUE(AwaitUnread(0)); // the read is under way, and waits for more
    platform_test::FailCall("CancelSynchronousIo", ERROR_NOT_ENOUGH_MEMORY); // it is tried again
    open_->Close();
    EXPECT_EQ(read.get().error, DWORD{ERROR_OPERATION_ABORTED});
    EXPECT_EQ(log_.TakeLines(), (Lines{"CPort Error MP::Read - ReadFile failed. Last error is 0x3E3"}));

    // Closed, it fails like a closed handle.
    EXPECT_EQ(Write("AT\r").error, DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(Read(0).error, DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(log_.TakeLines(), (Lines{"CPort Error MP::Write - WriteFile failed. Last error is 0x6",
                                       "CPort Error MP::Read - ReadFile failed. Last error is 0x6"}));
    SetUp();                                     // it opens again at once
    for (const char* call : {"read", "write"}) { // that nobody could end
        platform_test::FailCall("DuplicateHandle", ERROR_NOT_ENOUGH_MEMORY);
        EXPECT_EQ((*call == 'r' ? Read(0) : Write("no")).error, DWORD{ERROR_NOT_ENOUGH_MEMORY}) << call;
    }
    EXPECT_TRUE(Write("AT\r").done);
    EXPECT_EQ(Receive(3), "AT\r");
}
