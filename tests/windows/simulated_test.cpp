// PHNNRV-simulated.dll in place of PHNNRV.dll: the handset in the process, its script, its control pipe, its end.
#include <algorithm>
#include <array>
#include <thread>

#include "api/handset_fixture.h"
#include "callback/host_functions.h"
#include "support/files.h"
#include "windows/driver.h"

namespace {

namespace fs = std::filesystem;

class SimulatedTest : public HandsetTest
{
protected:
    SimulatedTest()
    {
        fs::copy_file(driver::BuiltLibrary().replace_filename("PHNNRV-simulated.dll"), bench_.LibraryPath(),
                      fs::copy_options::overwrite_existing);
    }
    ~SimulatedTest() override { Leave(); }

    void WriteScript(const std::string& lines) const { std::ofstream(Beside("PHNNRV-simulated.txt")) << lines; }

    std::string Report() const { return ReadAll(Beside("PHNNRV-simulated.report.txt")); }

    void Send(const std::string& line)
    {
        const char name[] = R"(\\.\pipe\phnsim)";
        while (pipe_ == INVALID_HANDLE_VALUE && WaitNamedPipeA(name, 10'000))
            pipe_ = CreateFileA(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        DWORD size = 0;
        EXPECT_TRUE(WriteFile(pipe_, (line + "\n").data(), static_cast<DWORD>(line.size() + 1), &size, nullptr));
    }

    std::string ReadLine()
    {
        std::array<char, 4096> bytes;
        DWORD size = 0;
        while (said_.find('\n') == std::string::npos && ReadFile(pipe_, bytes.data(), bytes.size(), &size, nullptr))
            said_.append(bytes.data(), size);
        const std::size_t end = said_.find('\n');
        EXPECT_NE(end, std::string::npos) << "the pipe has ended";
        const std::string line = said_.substr(0, end);
        said_.erase(0, end == std::string::npos ? end : end + 1);
        return line;
    }

    // The answer to a control line, itself a line.
    std::string Ask(const std::string& line)
    {
        Send(line);
        return ReadLine();
    }

    void Leave() { CloseHandle(std::exchange(pipe_, INVALID_HANDLE_VALUE)); }

    uint32_t BatteryLevel() const
    {
        PHN_BATTERY_INFO info{sizeof info, 0, 0};
        CALL(PHN_GetBatteryInfo)(&info);
        return info.uBattery2;
    }

    fs::path Beside(const char* name) const { return fs::path(bench_.LibraryPath()).replace_filename(name); }

private:
    HANDLE pipe_ = INVALID_HANDLE_VALUE;
    std::string said_;
};

using Types = std::vector<uint32_t>;

constexpr DWORD kTick = 2500; // one poll, and a little

TEST_F(SimulatedTest, TellsOfChangesAndOfBeingUnpluggedAndReplugged)
{
    Load();
    EXPECT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    EXPECT_EQ(CALL(PHN_SetCallback)(PHN_CALLBACK_ALL, Tell, 0), PHN_ERROR_NONE);
    EXPECT_EQ(CALL(PHN_SetCallback)(PHN_CALLBACK_REMOVED, Tell, 0), PHN_ERROR_NONE);
    EXPECT_EQ(Ask("show identity/model"), "\"Fjord 40 (simulated)\"");
    EXPECT_EQ(Ask("set battery/battery2 40"), "battery/battery2 = 40");
    EXPECT_EQ(Ask("flags 1BF"), "the host will be told"); // all but the battery's
    RunFor(kTick);
    EXPECT_EQ(TakeTypes(), (Types{1, 2, 3, 4, 5, 9}));

    EXPECT_EQ(Ask("unplug"), "unplugged");
    EXPECT_EQ(Battery(), PHN_ERROR_FAILED) << "not noticed yet";
    RunFor(10);
    const std::vector<Told> removed = TakeTold();
    ASSERT_EQ(removed.size(), 1u);
    EXPECT_EQ(removed[0].type, uint32_t{PHN_CALLBACK_REMOVED});
    EXPECT_EQ(removed[0].thread, GetCurrentThreadId());
    EXPECT_EQ(Battery(), PHN_ERROR_NO_DEVICE);
    EXPECT_EQ(Ask("replug"), "plugged in");
    RunFor(10);
    EXPECT_EQ(Battery(), PHN_ERROR_NO_SERVICE_OBJECT);
    EXPECT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
}

TEST_F(SimulatedTest, ReadsAsFromASerialPort)
{
    Load();
    ASSERT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    EXPECT_EQ(Ask("fault split=2,4,6,8,10/2@5*1"), "fault split=2,4,6,8,10/2@5*1");
    EXPECT_EQ(Battery(), PHN_ERROR_NONE) << "pieces of less than 10 ms between them are one read";
    EXPECT_EQ(Ask("fault split=2,4,6,8,10/60@5*1"), "fault split=2,4,6,8,10/60@5*1");
    EXPECT_EQ(Battery(), PHN_ERROR_FAILED) << "six reads are too many";
    RunFor(300);
    EXPECT_EQ(Ask("fault hangup@5*1"), "fault hangup@5*1");
    EXPECT_EQ(Battery(), PHN_ERROR_FAILED);
    RunFor(50);
    EXPECT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE) << "it could be opened again";
    EXPECT_EQ(Battery(), PHN_ERROR_NONE);
}

TEST_F(SimulatedTest, IsOpenedAgainWhileItMakesTheHostWait)
{
    Load();
    ASSERT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    EXPECT_EQ(Ask("fault delay=600000@5*1"), "fault delay=600000@5*1");
    std::thread waiting([this] { EXPECT_EQ(Battery(), PHN_ERROR_FAILED); });
    EXPECT_EQ(Ask("wait-for battery-information\nshow battery/battery2"), "80");
    driver::SendDeviceChange(DBT_DEVICEREMOVECOMPLETE);
    waiting.join();
    driver::SendDeviceChange(DBT_DEVICEARRIVAL);
    EXPECT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    EXPECT_EQ(Battery(), PHN_ERROR_NONE);
}

TEST_F(SimulatedTest, TellsAClientNothingThatAnotherOneAsked)
{
    Load();
    Send("wait-for startup\nshow battery/battery2");
    Leave();
    Send("show identity/model");
    EXPECT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    EXPECT_EQ(ReadLine(), "\"Fjord 40 (simulated)\"");
}

TEST_F(SimulatedTest, WaitsForNoClientAndKeepsLittleForIt)
{
    Load();
    ASSERT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    for (int line = 0; line < 150; ++line)
        Send("show");
    Send("set battery/battery2 41");
    const auto start = std::chrono::steady_clock::now();
    while (BatteryLevel() != 41 && std::chrono::steady_clock::now() - start < std::chrono::seconds(60))
        RunFor(20);
    EXPECT_EQ(BatteryLevel(), 41u) << "one that does not read holds up the others";
    std::size_t size = 0;
    std::string line;
    while (!line.starts_with("error: what was said next is lost") && size < 2'000'000)
        size += (line = ReadLine()).size();
    EXPECT_LT(size, 2'000'000u);

    EXPECT_EQ(Ask(std::string(100'000, 'x')), "error: a control line has at most 65536 bytes");
    Send("wait-for shutdown");
    for (int remark = 0; remark < 300; ++remark)
        Send("#" + std::string(60'000, 'x'));
    EXPECT_EQ(ReadLine(), "error: too many lines wait; from this one on they are dropped");
}

TEST_F(SimulatedTest, LeavesNoReportOfAnEarlierRun)
{
    std::ofstream(Beside("PHNNRV-simulated.report.txt")) << "PHNNRV-simulated.txt: passed\n";
    Load();
    EXPECT_FALSE(fs::exists(Beside("PHNNRV-simulated.report.txt")));
}

struct Ending
{
    const char* script;
    const char* held; // by another process
    bool begins;
    std::string why;
    std::string report;
};

class EndingTest : public SimulatedTest, public testing::WithParamInterface<Ending>
{
};

// After it, every line is answered with the reason.
TEST_P(EndingTest, IsToldEverywhere)
{
    const auto& [script, held, begins, why, report] = GetParam();
    bench_.SetLoggingLevel(TestBench::kAllLines);
    WriteScript(script);
    std::ofstream(Beside("PHNNRV-simulated.report.txt")) << "an earlier one\n";
    const HANDLE file = CreateFileA(Beside(held).string().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    Load();
    EXPECT_EQ(Battery(), begins ? PHN_ERROR_NO_SERVICE_OBJECT : PHN_ERROR_NO_DEVICE);
    if (begins) {
        EXPECT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
        EXPECT_EQ(CALL(PHN_Shutdown)(), PHN_ERROR_NONE);
    }
    std::string answer;
    while (!answer.starts_with("error: ") && !HasFailure())
        answer = Ask("show battery/battery2"); // 80, or the sentence itself, while it has not ended
    EXPECT_EQ(answer.substr(0, answer.find(why) + why.size()), "error: the simulated handset has ended: " + why);
    EXPECT_EQ(Ask("unplug"), answer);
    CloseHandle(file);
    EXPECT_EQ(Report().substr(0, report.size()), report);
    const std::vector<std::string> log = bench_.TakeLog();
    EXPECT_EQ(std::any_of(log.begin(), log.end(),
                          [&](const std::string& line) { return line.find(why) != std::string::npos; }),
              why != "a line said so");
}

const std::string kMisspelt = R"(PHNNRV-simulated.txt:2: "unplog" is no control line; "help" lists them)";
const std::string kUnmet = "PHNNRV-simulated.txt:2: rejected was expected at least once, but never came";

INSTANTIATE_TEST_SUITE_P(
    Ways, EndingTest,
    testing::Values(Ending{"set identity/number 5550100\nunplog\n", "", false, kMisspelt, kMisspelt},
                    Ending{"wait-for shutdown\nexpect rejected\n", "", true, kUnmet, kUnmet},
                    Ending{"wait-for shutdown\nend\n", "", true, "a line said so", "PHNNRV-simulated.txt: passed"},
                    Ending{"", "PHNNRV-simulated.txt", false, "PHNNRV-simulated.txt cannot be read",
                           "PHNNRV-simulated.txt cannot be read"},
                    Ending{"", "PHNNRV-simulated.report.txt", false,
                           "PHNNRV-simulated.report.txt cannot be written: ", "an earlier one"}));

TEST_F(SimulatedTest, EndsWithTheLibraryWhateverItIsDoing)
{
    WriteScript("every 1 show battery/battery2\nwait-for shutdown\n");
    for (unsigned cycle = 0; cycle < 10; ++cycle) {
        const HMODULE library = LoadLibraryA(bench_.LibraryPath().c_str());
        ASSERT_TRUE(library) << GetLastError();
        if (cycle % 2) {
            auto* const startup = reinterpret_cast<void*>(GetProcAddress(library, "PHN_Startup"));
            EXPECT_EQ(reinterpret_cast<decltype(&PHN_Startup)>(startup)(), PHN_ERROR_NONE);
        }
        for (unsigned line = 0; line < 40 && cycle % 4 == 3; ++line)
            Send("show"); // to a client that does not read
        const auto start = std::chrono::steady_clock::now();
        ASSERT_TRUE(FreeLibrary(library));
        ASSERT_FALSE(GetModuleHandleA("PHNNRV.dll")) << "still loaded";
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
        Leave();
    }
    EXPECT_NE(Report().find("wait-for shutdown waits in vain: the library was unloaded, and it never came"),
              std::string::npos)
        << Report();
}

} // namespace
