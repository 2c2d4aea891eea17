// Loading and unloading where something is in the way, and a host that ends without unloading.
#include <dlfcn.h>

#include <cstdio>

#include "api/handset_fixture.h"
#include "phn_platform_test.h"
#include "simulator/lines/simulator.h"

namespace fs = std::filesystem;
using std::chrono::steady_clock;

namespace {

// With a silent handset on a serial port, which every scan asks in vain.
class LoadTest : public HandsetTest
{
protected:
    LoadTest()
    {
        bench_.SetLoggingLevel(TestBench::kAllLines);
        silent_.Control().AddFault("silence");
        silent_.Start();
    }

    simulator::Simulator silent_{bench_.Devices(), "com1"};
};

} // namespace

// The thread that the unload waits for tries it once more: its last line finds the log closed.
TEST_F(LoadTest, ALogThatCannotBeOpenedDoesNotHoldUpTheUnload)
{
    const fs::path longest = fs::path(bench_.LibraryPath()).replace_filename(std::string(240, 'x'));
    fs::copy_file(bench_.LibraryPath(), longest);
    const HMODULE library = LoadLibraryA(longest.c_str());
    ASSERT_TRUE(library);
    ASSERT_TRUE(PumpUntil([&] { return silent_.Control().Requests(1) > 0; })) << "no scan";
    EXPECT_TRUE(FreeLibrary(library));
    EXPECT_TRUE(bench_.TakeLog().empty());
}

TEST_F(LoadTest, ALibraryThatCannotMakeWhatItNeedsIsNotLoaded)
{
    for (const char* call : {"CreateEventA", "CreateMutexA"}) {
        platform_test::FailCall(call, ERROR_NOT_ENOUGH_MEMORY);
        EXPECT_FALSE(LoadLibraryA(bench_.LibraryPath().c_str())) << call;
        EXPECT_EQ(GetLastError(), DWORD{ERROR_DLL_INIT_FAILED});
        EXPECT_FALSE(GetModuleHandleA("PHNNRV.dll"));
    }
    bench_.TakeLog();
    platform_test::FailCall("CreateEventA", ERROR_NOT_ENOUGH_MEMORY);
    void* const opened = dlopen(bench_.LibraryPath().c_str(), RTLD_NOW); // which cannot be refused
    ASSERT_TRUE(opened);
    EXPECT_EQ(reinterpret_cast<decltype(&PHN_Startup)>(dlsym(opened, "PHN_Startup"))(), PHN_ERROR_FAILED);
    EXPECT_EQ(bench_.TakeLog().back(), "CCalderApp Error PHN_Startup - The library could not be loaded.");
    dlclose(opened);
    const HMODULE library = LoadLibraryA(bench_.LibraryPath().c_str());
    ASSERT_TRUE(library);
    EXPECT_TRUE(FreeLibrary(library));
}

TEST_F(LoadTest, AHostThatEndsWithoutUnloadingEndsAtOnce)
{
    setenv("TSAN_OPTIONS", "atexit_sleep_ms=0", 1); // ThreadSanitizer would add a second of its own
    FILE* const host = popen(("exec " CARELESS_HOST " " + bench_.LibraryPath()).c_str(), "we");
    ASSERT_TRUE(host);
    EXPECT_TRUE(silent_.Control().WaitForRequests(1, 1, std::chrono::seconds(20))) << "no scan";
    const auto begin = steady_clock::now();
    EXPECT_EQ(pclose(host), 0);
    EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(2));
    std::string log;
    for (const std::string& line : bench_.TakeLog())
        log += line + '\n';
    EXPECT_NE(log.find("BT_Thread - Handle is null, so begin to scan"), std::string::npos);
    EXPECT_EQ(log.find("CDevice::UninitPortScanning - Start"), std::string::npos);
}
