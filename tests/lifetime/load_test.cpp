// Loading and unloading, again and again, and a host that ends without unloading.
#include <fcntl.h>
#include <malloc.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>

#include "api/handset_fixture.h"
#include "simulator/device_directory.h"
#include "simulator/simulator.h"

namespace fs = std::filesystem;
using std::chrono::steady_clock;

namespace {

size_t CountEntries(const char* folder)
{
    return static_cast<size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

struct Usage
{
    size_t threads = CountEntries("/proc/self/task");
    size_t descriptors = CountEntries("/proc/self/fd");
    size_t memory = mallinfo2().uordblks;
};

// With a silent handset on a serial port, which every scan asks in vain.
class LoadTest : public HandsetTest
{
protected:
    LoadTest()
    {
        bench_.SetLoggingLevel(TestBench::kAllLines);
        setenv("PHNNRV_DEVICES", devices_.Path().c_str(), 1);
        silent_.Control().AddFault("silence");
        silent_.Start();
    }

    const simulator::DeviceDirectory devices_;
    simulator::Simulator silent_{devices_.Path(), "com1"};
};

} // namespace

TEST_F(LoadTest, FiftyCyclesSomeDuringAScanLeaveNothingBehind)
{
    setenv("PHNNRV_TIME_SCALE", "0.05", 1);
    Usage warm;
    for (unsigned cycle = 1; cycle <= 50; ++cycle) {
        const HMODULE library = LoadLibraryA(bench_.LibraryPath().c_str());
        ASSERT_TRUE(library);
        const auto probes = silent_.Control().Requests(1);
        ASSERT_TRUE(cycle % 2 == 0 || PumpUntil([&] { return silent_.Control().Requests(1) > probes; })) << "no scan";
        ASSERT_TRUE(FreeLibrary(library));
        ASSERT_FALSE(GetModuleHandleA("PHNNRV.dll")) << "still loaded";
        if (cycle == 10)
            warm = Usage();
    }
    const Usage last;
    EXPECT_EQ(last.threads, warm.threads);
    EXPECT_EQ(last.descriptors, warm.descriptors);
    EXPECT_LT(last.memory, warm.memory + 16384);
}

TEST_F(LoadTest, AHostThatEndsWithoutUnloadingEndsAtOnce)
{
    // ThreadSanitizer would add a second of its own.
    setenv("TSAN_OPTIONS", "atexit_sleep_ms=0", 1);
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[0], STDIN_FILENO);
    const std::string library = bench_.LibraryPath();
    const char* const arguments[] = {CARELESS_HOST, library.c_str(), nullptr};
    pid_t process = 0;
    ASSERT_EQ(posix_spawn(&process, arguments[0], &actions, nullptr, const_cast<char**>(arguments), environ), 0);
    posix_spawn_file_actions_destroy(&actions);

    EXPECT_TRUE(silent_.Control().WaitForRequests(1, 1, std::chrono::seconds(20))) << "no scan";
    const auto begin = steady_clock::now();
    close(ends[1]);
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    close(ends[0]);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(2));
    const std::vector<std::string> log = bench_.TakeLog();
    const auto has = [&](const char* text) {
        return std::ranges::any_of(log, [&](const std::string& line) { return line.find(text) != std::string::npos; });
    };
    EXPECT_TRUE(has("BT_Thread - Handle is null, so begin to scan"));
    EXPECT_FALSE(has("CDevice::UninitPortScanning - Start"));
}
