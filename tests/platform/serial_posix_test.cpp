// Serial ports, where Wine departs from Windows (a second opening, a blocking read that is cancelled) or has no like of
// the device directory and of a terminal that hangs up.
#include <sys/stat.h>

#include <array>
#include <cstdlib>
#include <ctime>

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
    for (const auto& [target, name] :
         {std::pair{"/no/such/device", "dangling"}, {"circular", "circular"}, {"/dev/null", "null"}})
        std::filesystem::create_symlink(target, directory / name);
    const std::pair<const char*, DWORD> cases[] = {
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
    const HANDLE port = Open(0, kNone);
    EXPECT_EQ(ErrorOfOpening("com5"), DWORD{ERROR_ACCESS_DENIED}); // it is opened by one only
    CloseHandle(port);
}

struct BlockingRead
{
    HANDLE port;
    DWORD error = ERROR_SUCCESS;
};

DWORD WINAPI ReadBlocking(LPVOID parameter)
{
    auto* read = static_cast<BlockingRead*>(parameter);
    std::array<char, 8> buffer{};
    DWORD got = 0;
    if (!ReadFile(read->port, buffer.data(), 8, &got, nullptr))
        read->error = GetLastError();
    return 0;
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
        {"closed", [](HANDLE port, HANDLE, FarEnd&) { CloseHandle(port); }, ERROR_OPERATION_ABORTED},
        {"hung up", [](HANDLE, HANDLE, FarEnd& end) { end.HangUp(); }, ERROR_GEN_FAILURE},
    };
    for (const auto& ending : cases) {
        BlockingRead read{Open(0, kNone)};
        const HANDLE thread = CreateThread(nullptr, 0, ReadBlocking, &read, 0, nullptr);
        ending.end(read.port, thread, *farEnd);
        ASSERT_EQ(WaitForSingleObject(thread, 10000), WAIT_OBJECT_0) << ending.how;
        // The port may be closed before the read has begun.
        EXPECT_TRUE(read.error == ending.error || read.error == ERROR_INVALID_HANDLE) << ending.how << read.error;
        CloseHandle(read.port);
        CloseHandle(thread);
    }
}

TEST_F(PortTest, AHungUpTerminalFailsAtOnceAndCostsNothing)
{
    const HANDLE port = Open(FILE_FLAG_OVERLAPPED, kNone);
    std::array<char, 8> buffer{};
    Operation pending;
    ASSERT_FALSE(ReadFile(port, buffer.data(), 8, nullptr, &pending.record));
    farEnd->HangUp();
    DWORD bytes = 0;
    EXPECT_EQ(pending.Finish(port, &bytes), DWORD{ERROR_GEN_FAILURE});

    Operation later;
    EXPECT_FALSE(ReadFile(port, buffer.data(), 8, nullptr, &later.record));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_GEN_FAILURE});
    EXPECT_FALSE(WriteFile(port, "x", 1, nullptr, &later.record));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_GEN_FAILURE});
    EXPECT_FALSE(ClearCommError(port, &bytes, nullptr));
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
        static std::array<char, 8> buffer;
        static OVERLAPPED record{};
        ReadFile(Open(FILE_FLAG_OVERLAPPED, kNone), buffer.data(), 8, nullptr, &record);
        const auto wait = [](LPVOID) -> DWORD {
            Sleep(INFINITE);
            return 0;
        };
        CreateThread(nullptr, 0, wait, nullptr, 0, nullptr);
        std::exit(3);
    };
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(endWithAReadPending(), testing::ExitedWithCode(3), "");
}

} // namespace
