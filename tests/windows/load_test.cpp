// Loading and unloading, and a host that ends without unloading, while the library probes a silent port.
#include <windows.h>

#include <tlhelp32.h>

#include "api/handset_fixture.h"
#include "windows/driver.h"

namespace {

unsigned CountThreads()
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    unsigned count = 0;
    for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry))
        count += entry.th32OwnerProcessID == GetCurrentProcessId();
    CloseHandle(snapshot);
    return count;
}

class LoadTest : public testing::Test
{
protected:
    LoadTest()
    {
        bench_.SetLoggingLevel(TestBench::kAllLines);
        bench_.Handset().AddFault("silence");
        driver::SetSerialPort(std::getenv("PHNNRV_TEST_PORT"));
    }

    TestBench bench_;
};

TEST_F(LoadTest, FiftyCyclesSomeDuringAScanLeaveNothingBehind)
{
    unsigned threads = 0;
    for (unsigned cycle = 1; cycle <= 50; ++cycle) {
        const HMODULE library = LoadLibraryA(bench_.LibraryPath().c_str());
        ASSERT_TRUE(library) << GetLastError();
        if (cycle % 2) {
            const auto probes = bench_.Handset().Requests(1);
            driver::DispatchStartTimer();
            ASSERT_TRUE(bench_.Handset().WaitForRequests(1, probes + 1, std::chrono::seconds(10))) << "no scan";
        }
        ASSERT_TRUE(FreeLibrary(library));
        ASSERT_FALSE(GetModuleHandleA("PHNNRV.dll")) << "still loaded";
        ASSERT_FALSE(FindWindowA(driver::kDeviceWindow, nullptr)) << "a window is left";
        if (cycle == 10)
            threads = CountThreads();
    }
    EXPECT_LT(CountThreads(), threads + 4); // the system's own, behind device notifications, come and go
}

TEST_F(LoadTest, AHostThatEndsWithoutUnloadingEndsAtOnce)
{
    const char name[] = "phnnrv-careless-host";
    const HANDLE end = CreateEventA(nullptr, TRUE, FALSE, name);
    const std::string host = driver::BuiltLibrary().replace_filename("careless_host.exe").string();
    std::string command = "\"" + host + "\" \"" + bench_.LibraryPath() + "\" " + name;
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    ASSERT_TRUE(
        CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
        << command;
    EXPECT_TRUE(bench_.Handset().WaitForRequests(1, 1, std::chrono::seconds(20))) << "no scan";
    SetEvent(end);
    EXPECT_EQ(WaitForSingleObject(process.hProcess, 2000), WAIT_OBJECT_0) << "still running";
    DWORD status = 1;
    EXPECT_TRUE(GetExitCodeProcess(process.hProcess, &status));
    EXPECT_EQ(status, 0u);
    TerminateProcess(process.hProcess, 1); // nothing, unless it hangs
    for (const HANDLE handle : {process.hThread, process.hProcess, end})
        CloseHandle(handle);
}

} // namespace
