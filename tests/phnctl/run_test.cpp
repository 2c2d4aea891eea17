// What goes with every run: the handset of --simulator, the wait, the log, Ctrl-C, and that nothing is left behind.
#include "phnctl/program.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace phnctl_test {
namespace {

namespace fs = std::filesystem;

TEST(Run, BringsAHandsetOfItsOwn)
{
    const std::pair<const char*, const char*> cases[] = {
        {"--simulator radio OFF", "The radio is off.\n"},
        {"error 1025", "1025 PHN_NETWORK_ERROR_1X_FADE, Fade\n"},
        {"error 3016 --json",
         "{\"code\":3016,\"name\":\"PHN_NETWORK_ERROR_EVDO_GPS_FIX\",\"text\":\"EVDO call, ended in favor of GPS "
         "fix\"}\n"},
        {"error phn_network_error_wcdma_no_service", "2000 PHN_NETWORK_ERROR_WCDMA_NO_SERVICE, No service\n"},
        {"error 1769", "1769 PHN_ERROR_RESULT_140: the handset refused, for a reason that only it knows\n"},
        {"error PHN_ERROR_RESULT_140",
         "1769 PHN_ERROR_RESULT_140: the handset refused, for a reason that only it knows\n"},
    };
    for (const auto& [words, out] : cases) {
        SCOPED_TRACE(words);
        Program program;
        const Outcome outcome = program.Run(Split(words));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.out, out);
        EXPECT_EQ(outcome.err, "");
        EXPECT_TRUE(fs::is_empty(program.TemporaryFolder()));
    }
}

TEST(Run, GivesUpWhenTheWaitIsOver)
{
    const simulator::DeviceDirectory devices;
    Program program;
    program.Set("PHNNRV_DEVICES", devices.Path().string());
    const auto start = std::chrono::steady_clock::now();
    const Outcome outcome = program.Run({"--wait", "1", "info"});
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    for (const char* text : {"100 PHN_ERROR_NO_DEVICE", "within 1 s", "phnctl --simulator info", "phnsim --port com5"})
        EXPECT_NE(outcome.err.find(text), std::string::npos) << outcome.err;
}

// The library writes its log beside itself, so it is loaded from a folder of this test.
TEST(Run, LogsOneRunAndLeavesTheRegistryAlone)
{
    const simulator::DeviceDirectory folder;
    const fs::path library = folder.Path() / "libphnnrv.so";
    const fs::path registry = folder.Path() / "user.reg";
    const std::string users =
        "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n\"Logging Level\"=dword:00000000\n";
    fs::copy_file(PHNNRV, library);
    std::ofstream(registry) << users;
    const std::pair<const char*, std::vector<bool>> cases[] = {
        {"all", {true, true}}, {"error", {true, false}}, {"0x00000406", {true, true}}, {"off", {false, false}}};
    for (const auto& [level, expected] : cases) {
        SCOPED_TRACE(level);
        Program program;
        program.Set("PHNNRV_REGISTRY", registry.string());
        const Outcome outcome = program.Run({"--simulator", "info", "--library", library.string(), "--log", level});
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        const std::size_t at = outcome.err.find("log: /");
        ASSERT_EQ(at != std::string::npos, expected[0]) << outcome.err;
        if (!expected[0])
            continue;
        const std::string path = outcome.err.substr(at + 5, outcome.err.find('\n', at) - at - 5);
        std::ifstream log(path);
        const std::string text{std::istreambuf_iterator<char>(log), std::istreambuf_iterator<char>()};
        EXPECT_EQ(text.find("\tCDevice\tComment\t") != std::string::npos, expected[1]) << text;
        fs::remove(path);
    }
    std::ifstream after(registry);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(after), {}), users);
}

// Waits until `folder` holds an entry, by its change events.
void AwaitEntry(const fs::path& folder)
{
    const int events = inotify_init1(IN_CLOEXEC);
    ASSERT_GE(inotify_add_watch(events, folder.c_str(), IN_CREATE | IN_MOVED_TO), 0);
    pollfd wait{events, POLLIN, 0};
    const bool came = !fs::is_empty(folder) || poll(&wait, 1, 60000) == 1;
    close(events);
    ASSERT_TRUE(came);
}

TEST(Run, EndsOnInterruptWithoutLeavingAnything)
{
    for (const int number : {SIGINT, SIGTERM}) {
        Program program;
        const pid_t process = program.Start(Split("info --wait 600 --log off"));
        AwaitEntry(program.TemporaryFolder());
        // Once the file inside is there, the folder is on the list of what has to go.
        AwaitEntry(fs::directory_iterator(program.TemporaryFolder())->path());
        kill(process, number);
        const Outcome outcome = program.Finish(process);
        EXPECT_EQ(outcome.status, 130) << outcome.err;
        EXPECT_NE(outcome.err.find("interrupted"), std::string::npos);
        EXPECT_TRUE(fs::is_empty(program.TemporaryFolder()));
    }
}

} // namespace
} // namespace phnctl_test
