// Loading and unloading, again and again, and a host that ends without unloading.
#include <fcntl.h>
#include <malloc.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>

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

std::string ReadLog(const fs::path& folder)
{
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".log")
            return (std::ostringstream() << std::ifstream(entry.path()).rdbuf()).str();
    }
    return {};
}

struct Usage
{
    size_t threads = CountEntries("/proc/self/task");
    size_t descriptors = CountEntries("/proc/self/fd");
    size_t memory = mallinfo2().uordblks;
};

} // namespace

TEST(LoadTest, FiftyCyclesSomeDuringAScanLeaveNothingBehind)
{
    setenv("PHNNRV_TIME_SCALE", "0.05", 1);
    TestBench bench;
    bench.SetLoggingLevel(TestBench::kAllLines);
    const simulator::DeviceDirectory devices;
    setenv("PHNNRV_DEVICES", devices.Path().c_str(), 1);
    simulator::Simulator silent(devices.Path(), "com1");
    silent.Control().AddFault("silence");
    silent.Start();

    Usage warm;
    for (unsigned cycle = 1; cycle <= 50; ++cycle) {
        const HMODULE library = LoadLibraryA(bench.LibraryPath().c_str());
        ASSERT_TRUE(library);
        const auto probes = silent.Control().Requests(1);
        const auto end = steady_clock::now() + std::chrono::seconds(10);
        while (cycle % 2 && silent.Control().Requests(1) == probes) {
            ASSERT_LT(steady_clock::now(), end) << "no scan";
            MSG message;
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
            while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
                DispatchMessageA(&message);
        }
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

TEST(LoadTest, AHostThatEndsWithoutUnloadingEndsAtOnce)
{
    // ThreadSanitizer would add a second of its own.
    setenv("TSAN_OPTIONS", "atexit_sleep_ms=0", 1);
    TestBench bench;
    bench.SetLoggingLevel(TestBench::kAllLines);
    const simulator::DeviceDirectory devices;
    setenv("PHNNRV_DEVICES", devices.Path().c_str(), 1);
    simulator::Simulator silent(devices.Path(), "com1");
    silent.Control().AddFault("silence");
    silent.Start();

    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[0], STDIN_FILENO);
    const std::string library = bench.LibraryPath();
    const char* const arguments[] = {CARELESS_HOST, library.c_str(), nullptr};
    pid_t process = 0;
    ASSERT_EQ(posix_spawn(&process, CARELESS_HOST, &actions, nullptr, const_cast<char**>(arguments), environ), 0);
    posix_spawn_file_actions_destroy(&actions);

    EXPECT_TRUE(silent.Control().WaitForRequests(1, 1, std::chrono::seconds(20))) << "no scan";
    const auto begin = steady_clock::now();
    close(ends[1]);
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    close(ends[0]);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(2));
    const std::string log = ReadLog(fs::path(library).parent_path());
    EXPECT_NE(log.find("BT_Thread - Handle is null, so begin to scan"), std::string::npos);
    EXPECT_EQ(log.find("CDevice::UninitPortScanning - Start"), std::string::npos);
}
