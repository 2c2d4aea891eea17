// Serial ports where Wine departs from Windows, or has no like of the device directory or of a hang-up.
#include <sys/stat.h>

#include <array>
#include <ctime>
#include <utility>

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
        {"\\\\.\\Com5", ERROR_SUCCESS},
        {"\\\\?\\COM6", ERROR_FILE_NOT_FOUND},
        {"\\\\?\\..", ERROR_FILE_NOT_FOUND},
        {"\\\\?\\fifo", ERROR_BAD_DEVICE},
        {"\\\\?\\null", ERROR_BAD_DEVICE},
        {"\\\\?\\folder", ERROR_DIRECTORY},
        {"\\\\?\\dangling", ERROR_FILE_NOT_FOUND},
        {"\\\\?\\circular", ERROR_CANT_RESOLVE_FILENAME},
    };
    for (const auto& [name, error] : cases)
        EXPECT_EQ(ErrorOfOpening(name), error) << name;
    const HANDLE port = Open(0, kNone);
    EXPECT_EQ(ErrorOfOpening(PortName()), DWORD{ERROR_ACCESS_DENIED}) << "it is opened by one only";
    CloseHandle(port);
}

using BlockingRead = std::pair<HANDLE, DWORD>; // its port, and the error that ends it

DWORD WINAPI ReadBlocking(LPVOID parameter)
{
    auto* read = static_cast<BlockingRead*>(parameter);
    std::array<char, 8> buffer{};
    DWORD got = 0;
    if (!ReadFile(read->first, buffer.data(), 8, &got, nullptr))
        read->second = GetLastError();
    return 0;
}

TEST_F(PortTest, ABlockingReadIsEndedByACancellation)
{
    BlockingRead read{Open(0, kNone), ERROR_SUCCESS};
    const HANDLE thread = CreateThread(nullptr, 0, ReadBlocking, &read, 0, nullptr);
    while (!CancelSynchronousIo(thread) && GetLastError() == ERROR_NOT_FOUND) // until it is in its read
        Sleep(1);
    EXPECT_EQ(WaitForSingleObject(thread, 10000), WAIT_OBJECT_0);
    CloseHandle(read.first); // ends it, should it still read
    WaitForSingleObject(thread, INFINITE);
    EXPECT_EQ(read.second, DWORD{ERROR_OPERATION_ABORTED});
    CloseHandle(thread);
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

    const std::clock_t before = std::clock(); // of all threads
    Sleep(300);
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 20);
    CloseHandle(port);
}

TEST_F(PortTest, AWriteThatNobodyTakesEndsByItsTimeAndCostsNothingBesideUnreadInput)
{
    const HANDLE port = Open(FILE_FLAG_OVERLAPPED, {0, 0, 0, 0, 300});
    Send("unread");
    const std::string data(1 << 20, 'w');
    Operation writing;
    DWORD written = 0;
    ASSERT_FALSE(WriteFile(port, data.data(), 1 << 20, nullptr, &writing.record));
    const std::clock_t before = std::clock();
    WaitForSingleObject(writing.record.hEvent, INFINITE);
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 20);
    EXPECT_EQ(writing.Finish(port, &written), DWORD{ERROR_SUCCESS});
    EXPECT_GT(written, 0u);
    EXPECT_LT(written, 1u << 20);
    EXPECT_EQ(Receive(written).size(), written);
    CloseHandle(port);
}

} // namespace
