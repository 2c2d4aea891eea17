// Scripts of phnsim against a host that starts up, asks for the battery twice and closes: exit status and sentence.
#include "simulator/host_port.h"
#include "simulator/lines/device_directory.h"
#include "support/files.h"
#include "wire/golden_frames.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <tuple>

namespace {

constexpr int kMet = 0;
constexpr int kUnmet = 1;

class Script : public testing::Test
{
protected:
    // The exit status; `told` is what stands on standard error.
    int Run(const std::string& lines, const std::string& options)
    {
        const std::string folder = devices.Path().string();
        std::ofstream(folder + "/script") << lines;
        const std::string command = "cd " + folder +
                                    "; exec timeout 30 " PHNSIM " --devices . --port com5 --once --ready " + options +
                                    " --log log 2>told";
        std::FILE* const phnsim = popen(command.c_str(), "r");
        std::array<char, 256> ready{};
        if (std::fgets(ready.data(), ready.size(), phnsim)) {
            const host::Port opened{devices.Path() / "com5"};
            for (const std::uint32_t request : {1, 5, 5})
                opened.Ask(request);
        }
        const int status = pclose(phnsim);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string File(const char* name) const { return ReadAll(devices.Path() / name); }

    const simulator::DeviceDirectory devices;
};

TEST_F(Script, EndsAsItsExpectationsAreMet)
{
    const std::string script = "--script script </dev/null", input = "--strict <script";
    const std::string battery = "battery-information status=0 battery1=1 battery2=41\n";
    const std::string set = "set battery/battery2 41\n", answer = "battery/battery2 = 41\n";
    const std::tuple<std::string, std::string, int, std::string> cases[] = {
        {"\xEF\xBB\xBF"
         "after\t1 battery-information do " +
             set +
             "wait-for close\nexpect startup 1\nexpect 5 1 battery2=80\nexpect 5 1 battery2=41 status=0\n"
             "expect-none shutdown\nexpect-none rejected\n",
         script, kMet, answer},
        {set + "# counted\n\nwait-for close\nexpect battery-information 1\n", script, kUnmet,
         answer + "phnsim: script:5: battery-information was expected once, but came 2 times; the last was " + battery},
        {set + "wait-for close\nexpect \"battery information\" battery2=40\n", script, kUnmet,
         answer +
             "phnsim: script:3: battery-information battery2=40 was expected at least once, but never came; the last "
             "was " +
             battery},
        {"wait-for close\nexpect-none startup\n", input, kUnmet,
         "phnsim: standard input:2: startup was expected never, but came once; the last was startup status=0\n"},
        {"wait-for startup 2\nend\n", script, kUnmet,
         "phnsim: script:1: wait-for startup 2 waits in vain: the host has closed the port, and it came once; the last "
         "was "
         "startup status=0\n"},
        {"message 5550100 \"Hi there\"\nshow messages/27/body\n", script, kMet, "message 27 arrived\n\"Hi there\"\n"},
        {"expect startup battery2=1\n", script, kUnmet,
         "phnsim: script:1: \"battery2\" is no field of startup, which has status\n"},
        {"wait 10\nafter 1 startup do every 5 plug\n", script, kUnmet,
         "phnsim: script:2: wait, wait-for, after and every stand on lines of their own\n"},
        {"every 1 show battery/battery2\nwait-for close\nwait 200\nend\nwait-for startup 2\n", script, kMet,
         "80\n80\n"},
    };
    for (const auto& [lines, options, status, sentence] : cases) {
        SCOPED_TRACE(lines);
        EXPECT_EQ(Run(lines, options), status);
        EXPECT_EQ(File("told").substr(0, sentence.size()), sentence);
    }
}

TEST_F(Script, LeavesALogOfWhatCame)
{
    ASSERT_EQ(Run("fault status=10@5*1\nwait-for close\n", "--script script </dev/null"), kMet);
    const std::string log = File("log");
    for (const char* part : {R"("name":"startup","command":1,"sequence":1,"reply":{"status":0}})",
                             R"("sequence":1,"reply":{"status":10},"faults":["status=10@5*1"]})",
                             R"("reply":{"status":0,"battery1":1,"battery2":80}})", R"("name":"close"})"})
        EXPECT_NE(log.find(part), std::string::npos) << part << " in\n" << log;
}

TEST_F(Script, HasTheLinesOfTheLineOnlyWithoutASimulatedHandset)
{
    ASSERT_EQ(Run("", "--record recording </dev/null"), kMet);
    const std::string folder = devices.Path().string();
    EXPECT_NE(std::system(("cd " + folder +
                           "; printf 'help\\nset battery/battery2 41\\nend\\n' | timeout 30 " PHNSIM
                           " --devices . --port com5 --replay recording >told 2>&1")
                              .c_str()),
              0)
        << "nobody has asked what was recorded";
    EXPECT_NE(File("told").find("\nunplug "), std::string::npos) << File("told");
    EXPECT_EQ(File("told").find("show [PATH]"), std::string::npos);
    EXPECT_NE(File("told").find("\nerror: no simulated handset is here for this line"), std::string::npos);
}

// A packet of a capture is its bytes, zeros to a multiple of four, and who has sent it.
TEST_F(Script, CapturesWhatItRecords)
{
    ASSERT_EQ(Run("wait-for close\n", "--script script --record recording --pcap capture </dev/null"), kMet);
    const std::string folder = devices.Path().string();
    EXPECT_EQ(std::system((PHNSIM " --to-pcap " + folder + "/recording " + folder + "/turned").c_str()), 0);
    const host::Bytes request = wire::Hex("4B001300 01000000 01000000 0100 BA25 7E 000000 02000400 02000000");
    const host::Bytes reply = wire::Hex("01000000 01000000 0100 0000 DDC7 7E 02000400 01000000");
    for (const std::string& capture : {File("capture"), File("turned")}) {
        EXPECT_EQ(capture.size(), File("capture").size());
        for (const host::Bytes& packet : {request, reply})
            EXPECT_NE(capture.find(std::string(packet.begin(), packet.end())), std::string::npos);
    }
}

TEST_F(Script, GivesWayToARecordingOfIt)
{
    ASSERT_EQ(Run("set battery/battery2 41\n", "--script script --record recording </dev/null"), kMet);
    EXPECT_EQ(Run("", "--replay recording </dev/null"), kMet);
    std::string recording = File("recording");
    const std::size_t closing = recording.rfind('\n', recording.find(R"("from":"host","name":"close")")) + 1;
    std::ofstream(devices.Path() / "dropped")
        << recording.substr(0, closing) << recording.substr(recording.find('\n', closing) + 1) << '\n';
    EXPECT_EQ(Run("", "--replay dropped </dev/null"), kMet); // by the handset, with which --once ends as well
    EXPECT_EQ(Run("", "--replay recording --record ./recording </dev/null"), 2);
    for (int startup = 0; startup < 2; ++startup) { // the request and its reply
        const std::size_t line = recording.find('\n') + 1;
        recording.erase(line, recording.find('\n', line) + 1 - line);
    }
    std::ofstream(devices.Path() / "recording") << recording;
    EXPECT_EQ(Run("", "--replay recording </dev/null"), kUnmet);
    EXPECT_EQ(File("told"), "phnsim: recording:7: nothing more was expected, but startup came\n");
}

} // namespace
