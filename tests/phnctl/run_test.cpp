// What goes with every run: its own handset, the wait, others at the port, the log, Ctrl-C, and nothing left behind.
#include "phnctl/program.h"
#include "simulator/lines/simulator.h"

#include <array>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <thread>

namespace fs = std::filesystem;

TEST(Run, BringsAHandsetOfItsOwn)
{
    const std::pair<const char*, const char*> cases[] = {
        {"--simulator radio OFF", "The radio is off.\n"},
        {"error 3016 --library /nonexistent --json",
         "{\"code\":3016,\"name\":\"PHN_NETWORK_ERROR_EVDO_GPS_FIX\",\"text\":\"EVDO call, ended in favor of GPS "
         "fix\"}\n"},
        {"error PHN_ERROR_RESULT_140",
         "1769 PHN_ERROR_RESULT_140: the handset refused, for a reason that only it knows\n"},
    };
    for (const auto& [words, out] : cases) {
        SCOPED_TRACE(words);
        Program program;
        const Outcome outcome = program.Run(words);
        Expect(outcome, 0);
        EXPECT_EQ(outcome.out + outcome.err, out);
        EXPECT_TRUE(fs::is_empty(program.TemporaryFolder()));
    }
}

// The library alone looks at a port that was taken again after 15 seconds only.
TEST(Run, ComesToEachOfSeveralAtOnce)
{
    const simulator::DeviceDirectory devices;
    simulator::Simulator simulator(devices.Path(), "com5");
    simulator.Start();
    std::array<Program, 3> programs;
    std::array<pid_t, 3> processes{};
    for (std::size_t i = 0; i < programs.size(); ++i) {
        programs[i].Set("PHNNRV_DEVICES", devices.Path().string());
        programs[i].Set("PHNNRV_TIME_SCALE", "1");
        processes[i] = programs[i].Start("info --wait 12");
    }
    for (std::size_t i = 0; i < programs.size(); ++i)
        EXPECT_EQ(programs[i].Finish(processes[i]).status, 0);
}

TEST(Run, GivesUpWhenTheWaitIsOver)
{
    const simulator::DeviceDirectory devices;
    Program program;
    program.Set("PHNNRV_DEVICES", devices.Path().string());
    const auto start = std::chrono::steady_clock::now();
    Expect(program.Run("--wait 1 info"), 1,
           {"100 PHN_ERROR_NO_DEVICE", "within 1 s", "phnctl --simulator info", "phnsim --port com5"});
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
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
    const std::pair<const char*, bool> cases[] = {{"error", false}, {"0x00000406", true}};
    for (const auto& [level, hasComments] : cases) {
        SCOPED_TRACE(level);
        Program program;
        program.Set("PHNNRV_REGISTRY", registry.string());
        const Outcome outcome = program.Run("--simulator info --library " + library.string() + " --log " + level);
        Expect(outcome, 0, {"log: /"});
        const std::size_t at = outcome.err.find("log: /") + 5;
        const std::string path = outcome.err.substr(at, outcome.err.find('\n', at) - at);
        EXPECT_EQ(Has(ReadAll(path), "\tCDevice\tComment\t"), hasComments) << path;
        fs::remove(path);
    }
    EXPECT_FALSE(Has(Program().Run("--simulator info --log off").err, "log: "));
    EXPECT_EQ(ReadAll(registry), users);
}

TEST(Run, EndsOnInterruptWithoutLeavingAnything)
{
    for (const int number : {SIGINT, SIGTERM}) {
        Program program;
        const pid_t process = program.Start("info --wait 600 --log off");
        // Once there is a file in a folder, the folder is on the list of what has to go.
        for (const fs::recursive_directory_iterator end;
             std::distance(fs::recursive_directory_iterator(program.TemporaryFolder()), end) < 2;)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        kill(process, number);
        Expect(program.Finish(process), 130, {"interrupted"});
        EXPECT_TRUE(fs::is_empty(program.TemporaryFolder()));
    }
}
