// phnctl watch over everything that happens to a handset: news, a silence, a cable that is pulled and put back, Ctrl-C.
#include "phnctl/handset_run.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <regex>
#include <sys/stat.h>

namespace phnctl_test {
namespace {

using namespace std::chrono_literals;
using Words = std::vector<std::string>;

constexpr std::uint32_t kBattery = 5;
constexpr std::uint32_t kMessageCount = 15; // five in the end of a connection's first reading
constexpr std::uint32_t kPoll = 49;

class Watch : public HandsetRun
{
protected:
    Watch() { m_program.Set("PHNNRV_TIME_SCALE", "0.05"); }

    void Await(std::uint32_t command, std::uint64_t count)
    {
        ASSERT_TRUE(Handset().WaitForRequests(command, count, 30s)) << command;
    }
    // The reply to all that came before the next poll has been read.
    void AwaitPoll() { Await(kPoll, Handset().Requests(kPoll) + 1); }
    void AwaitConnection(unsigned number)
    {
        Await(kMessageCount, number * 5);
        AwaitPoll();
    }

    void ChangeBattery(std::uint8_t percent)
    {
        const auto next = Handset().Requests(kBattery) + 1;
        Handset().SetBattery({1, percent});
        Await(kBattery, next);
        AwaitPoll();
    }

    Outcome Follow(const char* words)
    {
        const pid_t process = m_program.Start(words);
        AwaitConnection(1);
        ChangeBattery(41);
        Handset().AddFault("silence@5*1");
        ChangeBattery(42);
        ChangeBattery(43);
        m_simulator.Unplug();
        m_simulator.Replug();
        AwaitConnection(2);
        kill(process, SIGINT);
        return m_program.Finish(process);
    }

    static Words Find(const std::string& text, const char* pattern)
    {
        const std::regex expression(pattern);
        Words found;
        for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end; ++match)
            found.push_back((*match)[1]);
        return found;
    }
};

const Words kEvents{"waiting", "connected",    "battery", "silent",   "battery",
                    "answers", "disconnected", "waiting", "connected"};

// With the first values of a handset that has come.
const Words kLines{"waiting",   "connected", "battery", "network",    "connection",   "messages",
                   "battery",   "silent",    "battery", "answers",    "disconnected", "waiting",
                   "connected", "battery",   "network", "connection", "messages"};

TEST_F(Watch, GivesProgramsAnObjectPerEvent)
{
    const Outcome outcome = Follow("watch --json");
    phnctl_test::Expect(outcome, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(Find(outcome.out, "(?:^|\n)\\{\"event\":\"(\\w+)\",\"time\":\"[-0-9]{10}T[:0-9]{8}[+]00:00\"[^\n]*\\}"),
              kEvents)
        << outcome.out;
    EXPECT_EQ(Find(outcome.out, "\"battery\":\\{\"uBattery1\":1,\"uBattery2\":(\\d+)\\}"),
              (Words{"80", "41", "43", "43"}));
    EXPECT_EQ(Find(outcome.out, "\"model\":\"([^\"]*)\",\"battery\":\\{[^}]*\\},\"network\":\\{[^}]*\\},"
                                "\"connection\":\\{[^}]*\\},\"messages\":\\{\"box0\""),
              (Words{"Fjord 40", "Fjord 40"}));
}

TEST_F(Watch, GivesPeopleALineOfWhatChanged)
{
    const Outcome outcome = Follow("watch");
    EXPECT_EQ(Find(outcome.out, "(?:^|\n)[:0-9]{8}  (\\w+) [^\n]*"), kLines) << outcome.out;
    phnctl_test::Expect(outcome, 0,
                        {"  messages      Inbox 6, Drafts 5, Sent 6, Archive 5, Templates 5\n",
                         "  battery       Charge [####......] 41 %\n"});
}

// The first has the handset; it goes on when that is free.
TEST_F(Watch, NamesWhoHasTheHandset)
{
    Program first;
    first.Set("PHNNRV_DEVICES", m_devices.Path().string());
    const pid_t holder = first.Start("watch");
    AwaitConnection(1);
    const std::string pipe = Path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    m_program.SendOutputTo(pipe);
    const pid_t process = m_program.Start("watch --json");
    fcntl(reader, F_SETFL, 0);
    std::FILE* const output = fdopen(reader, "r");
    char line[500]{};
    EXPECT_TRUE(std::fgets(line, sizeof line, output));
    EXPECT_TRUE(std::strstr(line, "\"reason\":\"in-use\",\"holders\":\"usb#")) << line;
    EXPECT_TRUE(std::strstr(line, (" is in use by phnctl (pid " + std::to_string(holder) + ")").c_str())) << line;
    kill(holder, SIGINT);
    first.Finish(holder);
    AwaitConnection(2);
    kill(process, SIGINT);
    EXPECT_EQ(m_program.Finish(process).status, 0);
    std::fclose(output);
}

} // namespace
} // namespace phnctl_test
