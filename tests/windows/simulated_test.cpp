// PHNNRV-simulated.dll in place of PHNNRV.dll: the handset in the process as a host meets it, its script, its control
// pipe, and its end.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "api/handset_fixture.h"
#include "callback/host_functions.h"
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
    ~SimulatedTest() override { CloseHandle(pipe_); }

    void WriteScript(const std::string& lines) const { std::ofstream(Beside("PHNNRV-simulated.txt")) << lines; }

    std::string Report() const
    {
        std::ifstream file(Beside("PHNNRV-simulated.report.txt"));
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // The answer to a control line, itself a line.
    std::string Ask(const std::string& line)
    {
        if (pipe_ == INVALID_HANDLE_VALUE)
            pipe_ =
                CreateFileA(R"(\\.\pipe\phnsim)", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        DWORD size = 0;
        std::string answer;
        EXPECT_TRUE(WriteFile(pipe_, (line + "\n").data(), static_cast<DWORD>(line.size() + 1), &size, nullptr));
        for (char next = 0; ReadFile(pipe_, &next, 1, &size, nullptr) && next != '\n';)
            answer += next;
        return answer;
    }

    fs::path Beside(const char* name) const { return fs::path(bench_.LibraryPath()).replace_filename(name); }

private:
    HANDLE pipe_ = INVALID_HANDLE_VALUE;
};

using Types = std::vector<uint32_t>;

TEST_F(SimulatedTest, TellsOfChangesAndOfBeingUnpluggedAndReplugged)
{
    Load();
    EXPECT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    EXPECT_EQ(CALL(PHN_SetCallback)(PHN_CALLBACK_ALL, Tell, 0), PHN_ERROR_NONE);
    EXPECT_EQ(CALL(PHN_SetCallback)(PHN_CALLBACK_REMOVED, Tell, 0), PHN_ERROR_NONE);
    EXPECT_EQ(Ask("show identity/model"), "\"Fjord 40 (simulated)\"");
    EXPECT_EQ(Ask("set battery/battery2 40"), "battery/battery2 = 40");
    RunFor(2500);
    EXPECT_EQ(TakeTypes(), Types{PHN_CALLBACK_BATTERY_INFO});

    EXPECT_EQ(Ask("unplug"), "unplugged");
    EXPECT_EQ(Battery(), PHN_ERROR_FAILED) << "not noticed yet";
    RunFor(10);
    EXPECT_EQ(TakeTypes(), Types{PHN_CALLBACK_REMOVED});
    EXPECT_EQ(Battery(), PHN_ERROR_NO_DEVICE);
    EXPECT_EQ(Ask("replug"), "plugged in");
    RunFor(10);
    EXPECT_EQ(Battery(), PHN_ERROR_NO_SERVICE_OBJECT);
    EXPECT_EQ(CALL(PHN_Startup)(), PHN_ERROR_NONE);
    EXPECT_EQ(Battery(), PHN_ERROR_NONE);
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

TEST_F(SimulatedTest, ABadScriptIsTold)
{
    bench_.SetLoggingLevel(TestBench::kAllLines);
    WriteScript("set identity/number 5550100\nunplog\n");
    Load();
    const std::string wrong = R"(PHNNRV-simulated.txt:2: "unplog" is no control line; "help" lists them)";
    EXPECT_EQ(Report(), wrong + "\n");
    EXPECT_EQ(Battery(), PHN_ERROR_NO_DEVICE);
    const std::vector<std::string> log = bench_.TakeLog();
    EXPECT_NE(std::find_if(log.begin(), log.end(),
                           [&](const std::string& line) { return line.find(wrong) != std::string::npos; }),
              log.end());
}

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
        const auto start = std::chrono::steady_clock::now();
        ASSERT_TRUE(FreeLibrary(library));
        ASSERT_FALSE(GetModuleHandleA("PHNNRV.dll")) << "still loaded";
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
    }
    EXPECT_NE(Report().find("wait-for shutdown waits in vain: the library was unloaded, and it never came"),
              std::string::npos)
        << Report();
}

} // namespace
