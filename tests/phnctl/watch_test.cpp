// phnctl watch over everything that happens to a handset: news, a silence, a cable that is pulled and put back, Ctrl-C.
#include "phnctl/handset_run.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <regex>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

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

TEST_F(Watch, GivesProgramsAnObjectPerEvent)
{
    const Outcome outcome = Follow("watch --json");
    ::Expect(outcome, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(Find(outcome.out, "(?:^|\n)\\{\"event\":\"(\\w+)\",\"time\":\"[-0-9]{10}T[:0-9]{8}[+]00:00\"[^\n]*\\}"),
              kEvents)
        << outcome.out;
    EXPECT_EQ(Find(outcome.out, "\"battery\":\\{\"uBattery1\":1,\"uBattery2\":(\\d+)\\}"),
              (Words{"80", "41", "43", "43"}));
    EXPECT_EQ(Find(outcome.out, "\"model\":\"([^\"]*)\",\"battery\":.*\"network\":.*\"connection\":.*\"box0\""),
              (Words{"Fjord 40", "Fjord 40"}));
}

TEST_F(Watch, GivesPeopleALineOfWhatChanged)
{
    ::Expect(Follow("watch"), 0,
             {"  messages      Inbox 6, Drafts 5, Sent 6, Archive 5, Templates 5\n",
              "  battery       Charge [####......] 41 %\n", "  silent ", "  answers ", "  disconnected "});
}

TEST_F(Watch, NamesWhoHasTheHandset)
{
    const auto port = m_devices.Path() / simulator::UsbInterfaceName("0001");
    const int held = open(port.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    m_program.SendOutputTo(Path("out"));
    const pid_t process = m_program.Start("watch --json");
    for (int i = 0; i < 3000 && ReadAll(Path("out")).empty(); ++i)
        std::this_thread::sleep_for(10ms);
    close(held); // and it goes on when the handset is free
    AwaitConnection(1);
    kill(process, SIGINT);
    EXPECT_EQ(m_program.Finish(process).status, 0);
    const std::string said = ReadAll(Path("out"));
    EXPECT_TRUE(Has(said, "\"reason\":\"in-use\",\"holders\":\"usb#")) << said;
    EXPECT_TRUE(Has(said, " is in use by test_phnctl (pid " + std::to_string(getpid()) + ")")) << said;
}

} // namespace
