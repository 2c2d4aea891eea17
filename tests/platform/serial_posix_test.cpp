// Serial ports, where Wine departs from Windows (a second opening, a blocking read that is cancelled) or has no like of
// the device directory and of a terminal that hangs up.
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <ctime>
#include <tuple>

#include "platform/pty_fixture.h"

namespace {

constexpr COMMTIMEOUTS kNone{0, 0, 0, 0, 0};

DWORD ErrorOfOpening(const std::string& name)
{
    const HANDLE port = CreateFileA(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (port == INVALID_HANDLE_VALUE)
        return GetLastError();
    CloseHandle(port);
    return ERROR_SUCCESS;
}

TEST_F(PortTest, EntriesOpenByNameAndWhatIsNoPortSaysWhy)
{
    const auto& directory = farEnd->directory;
    mkfifo((directory / "fifo").c_str(), 0600);
    std::filesystem::create_directory(directory / "folder");
    std::filesystem::create_symlink("/no/such/device", directory / "dangling");
    std::filesystem::create_symlink("circular", directory / "circular");
    std::filesystem::create_symlink("/dev/null", directory / "null");
    const std::tuple<const char*, DWORD> cases[] = {
        {"com5", ERROR_SUCCESS},
        {"\\\\.\\Com5", ERROR_SUCCESS},
        {"\\\\?\\COM5", ERROR_SUCCESS},
        {"\\\\?\\COM6", ERROR_FILE_NOT_FOUND},
        {"\\\\?\\..", ERROR_FILE_NOT_FOUND},
        {"fifo", ERROR_BAD_DEVICE},
        {"null", ERROR_BAD_DEVICE},
        {"folder", ERROR_DIRECTORY},
        {"dangling", ERROR_FILE_NOT_FOUND},
        {"circular", ERROR_CANT_RESOLVE_FILENAME},
    };
    for (const auto& [name, error] : cases)
        EXPECT_EQ(ErrorOfOpening(name), error) << name;
}

TEST_F(PortTest, APortIsOpenedByOneOnly)
{
    const HANDLE port = Open(0, kNone);
    EXPECT_EQ(ErrorOfOpening("com5"), DWORD{ERROR_ACCESS_DENIED});
    CloseHandle(port);
    EXPECT_EQ(ErrorOfOpening("com5"), DWORD{ERROR_SUCCESS});
}

struct BlockingRead
{
    HANDLE port;
    std::array<char, 8> buffer{};
};

DWORD WINAPI ReadBlocking(LPVOID parameter)
{
    auto* read = static_cast<BlockingRead*>(parameter);
    DWORD got = 0;
    return ReadFile(read->port, read->buffer.data(), 8, &got, nullptr) ? DWORD{ERROR_SUCCESS} : GetLastError();
}

TEST_F(PortTest, ABlockingReadIsEndedByWhoeverMayEndIt)
{
    const struct
    {
        const char* how;
        void (*end)(HANDLE port, HANDLE thread, FarEnd& farEnd);
        DWORD error;
    } cases[] = {
        {"cancelled",
         [](HANDLE, HANDLE thread, FarEnd&) {
             while (!CancelSynchronousIo(thread) && GetLastError() == ERROR_NOT_FOUND) // until it is in its read
                 Sleep(1);
         },
         ERROR_OPERATION_ABORTED},
        {"purged",
         [](HANDLE port, HANDLE thread, FarEnd&) {
             while (WaitForSingleObject(thread, 1) == WAIT_TIMEOUT)
                 PurgeComm(port, PURGE_RXABORT);
         },
         ERROR_OPERATION_ABORTED},
        {"hung up", [](HANDLE, HANDLE, FarEnd& end) { end.HangUp(); }, ERROR_GEN_FAILURE},
    };
    const HANDLE port = Open(0, kNone);
    for (const auto& ending : cases) {
        BlockingRead read{port};
        const HANDLE thread = CreateThread(nullptr, 0, ReadBlocking, &read, 0, nullptr);
        ending.end(port, thread, *farEnd);
        ASSERT_EQ(WaitForSingleObject(thread, 10000), WAIT_OBJECT_0) << ending.how;
        DWORD error = 0;
        GetExitCodeThread(thread, &error);
        EXPECT_EQ(error, ending.error) << ending.how;
        CloseHandle(thread);
    }
    CloseHandle(port);
}

TEST_F(PortTest, ClosingThePortEndsABlockingRead)
{
    BlockingRead read{Open(0, kNone)};
    const HANDLE thread = CreateThread(nullptr, 0, ReadBlocking, &read, 0, nullptr);
    CloseHandle(read.port); // before or after the read has begun
    ASSERT_EQ(WaitForSingleObject(thread, 10000), WAIT_OBJECT_0);
    DWORD error = 0;
    GetExitCodeThread(thread, &error);
    EXPECT_TRUE(error == ERROR_OPERATION_ABORTED || error == ERROR_INVALID_HANDLE) << error;
    EXPECT_EQ(ErrorOfOpening("com5"), DWORD{ERROR_SUCCESS});
    CloseHandle(thread);
}

TEST_F(PortTest, AHungUpTerminalFailsAtOnceAndCostsNothing)
{
    const HANDLE port = Open(FILE_FLAG_OVERLAPPED, kNone);
    std::array<char, 8> buffer{};
    Operation pending;
    ASSERT_FALSE(ReadFile(port, buffer.data(), 8, nullptr, &pending.record));
    ASSERT_EQ(GetLastError(), DWORD{ERROR_IO_PENDING});
    farEnd->HangUp();
    DWORD bytes = 0;
    EXPECT_EQ(pending.Finish(port, &bytes), DWORD{ERROR_GEN_FAILURE});

    DWORD errors = 0;
    Operation later;
    EXPECT_FALSE(ReadFile(port, buffer.data(), 8, nullptr, &later.record));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_GEN_FAILURE});
    EXPECT_FALSE(WriteFile(port, "x", 1, nullptr, &later.record));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_GEN_FAILURE});
    EXPECT_FALSE(ClearCommError(port, &errors, nullptr));
    EXPECT_FALSE(PurgeComm(port, PURGE_RXCLEAR));

    const std::clock_t before = std::clock(); // of all threads
    Sleep(300);
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 20);
    CloseHandle(port);
}

TEST_F(PortTest, AWriteThatNobodyTakesEndsByItsTime)
{
    const HANDLE port = Open(FILE_FLAG_OVERLAPPED, {0, 0, 0, 0, 50});
    const std::string data(1 << 20, 'w');
    Operation writing;
    DWORD written = 0;
    ASSERT_FALSE(WriteFile(port, data.data(), 1 << 20, nullptr, &writing.record));
    ASSERT_EQ(GetLastError(), DWORD{ERROR_IO_PENDING});
    EXPECT_EQ(writing.Finish(port, &written), DWORD{ERROR_SUCCESS});
    EXPECT_GT(written, 0u);
    EXPECT_LT(written, 1u << 20);
    EXPECT_EQ(Receive(written).size(), written);
    CloseHandle(port);
}

// A process whose other threads still wait, and whose service thread runs, ends at once.
TEST_F(PortTest, AProcessEndsWhileThreadsWait)
{
    const auto endWithAReadPending = [&] {
        const HANDLE port = Open(FILE_FLAG_OVERLAPPED, kNone);
        static std::array<char, 8> buffer;
        static OVERLAPPED record{};
        ReadFile(port, buffer.data(), 8, nullptr, &record);
        CreateThread(
            nullptr, 0,
            [](LPVOID) -> DWORD {
                Sleep(INFINITE);
                return 0;
            },
            nullptr, 0, nullptr);
        std::exit(3);
    };
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(endWithAReadPending(), testing::ExitedWithCode(3), "");
}

} // namespace
