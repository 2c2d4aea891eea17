// phnctl backup and restore: what goes into the folder, and that a restore takes nothing away unasked.
#include "phnctl/handset_run.h"

#include <csignal>
#include <filesystem>
#include <fstream>

namespace phnctl_test {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t kWriteContact = 36;
constexpr std::uint32_t kSaveMessage = 19;

class Backup : public HandsetRun
{
protected:
    // Fewer entries than a handset has otherwise: each takes its time to be read and written.
    Backup()
    {
        Handset().Change(0, [](simulator::Phone& phone) {
            phone.contacts.erase(phone.contacts.lower_bound(26), phone.contacts.end());
            phone.events.erase(phone.events.lower_bound(10), phone.events.end());
            phone.limits.contacts = 32;
            phone.limits.events = 16;
        });
    }
    // What is left of a backup is restored, without the time that the other parts take.
    void BackUpOnly(const std::string& file)
    {
        ASSERT_EQ(Run("backup " + m_backup).status, 0);
        for (const char* other : {"contacts.vcf", "events.ics", "messages.json", "calls.json"})
            if (other != file)
                std::filesystem::remove(std::filesystem::path(m_backup) / other);
    }
    std::size_t Contacts() { return Handset().Snapshot().contacts.size(); }
    std::size_t Messages() { return Handset().Snapshot().messages.size(); }
    void Clear()
    {
        Handset().Change(0, [](simulator::Phone& phone) {
            phone.contacts.clear();
            phone.messages.clear();
        });
    }

    simulator::DeviceDirectory m_folder;
    const std::string m_backup = (m_folder.Path() / "backup").string();
};

TEST_F(Backup, ComesBackAndGoesOnAfterAnInterrupt)
{
    BackUpOnly("contacts.vcf");
    EXPECT_EQ(Run("backup " + m_backup).status, 2) << "a backup is not replaced unasked";
    Clear();
    Handset().AddFault("delay=30@36");
    const pid_t process = m_program.Start({"restore", m_backup});
    ASSERT_TRUE(Handset().WaitForRequests(kWriteContact, 3, 60s));
    kill(process, SIGINT);
    EXPECT_EQ(m_program.Finish(process).status, 130);
    const std::size_t written = Contacts();
    EXPECT_LT(written, 23u);
    Handset().ClearFaults();
    Run("restore " + m_backup);
    EXPECT_EQ(Contacts(), 23u); // one of the 24 has neither number nor address
    EXPECT_EQ(Handset().Requests(kWriteContact), 23u);
    EXPECT_EQ(Run("restore " + m_backup + " --json").out.find("\"written\":1"), std::string::npos);
    EXPECT_EQ(Handset().Requests(kWriteContact), 23u);
}

// They come back without their times; those that are there are not saved twice.
TEST_F(Backup, MessagesComeBackOnce)
{
    Handset().Change(0, [](simulator::Phone& phone) { // what has no text cannot be written
        std::erase_if(phone.messages, [](const auto& item) { return item.second.body.empty(); });
    });
    BackUpOnly("messages.json");
    const std::size_t before = Messages();
    for (const bool isEmpty : {true, false}) {
        SCOPED_TRACE(isEmpty);
        Handset().Change(0, [&](simulator::Phone& phone) {
            isEmpty ? phone.messages.clear() : void(phone.messages.erase(phone.messages.begin()));
        });
        const Outcome first = Run("restore " + m_backup);
        EXPECT_EQ(Messages(), before) << first.out << first.err;
        const std::uint64_t saved = Handset().Requests(kSaveMessage);
        Run("restore " + m_backup);
        EXPECT_EQ(Handset().Requests(kSaveMessage), saved);
    }
}

TEST_F(Backup, APartThatFailsDoesNotLoseTheOthers)
{
    Handset().AddFault("status=7@17");
    const Outcome outcome = Run("backup " + m_backup);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("messages: 102 PHN_ERROR_STATUS_7"), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.out.find("The backup is NOT whole.\n"), std::string::npos) << outcome.out;
    for (const char* file : {"contacts.vcf", "calls.json"})
        EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(m_backup) / file)) << file;
    std::ofstream(std::filesystem::path(m_backup) / "messages.json") << "{ broken";
    Clear();
    EXPECT_EQ(Run("restore " + m_backup).status, 1);
    EXPECT_EQ(Contacts(), 23u);
}

TEST_F(Backup, ARestoreDeletesOnlyWhatItIsToldTo)
{
    Handset().Change(0, [](simulator::Phone& phone) { phone.contacts.erase(21); });
    BackUpOnly("contacts.vcf");
    Handset().Change(0, [](simulator::Phone& phone) {
        phone.contacts[30] = phone.contacts[0];
        phone.contacts[30].firstName = "Other";
    });
    EXPECT_EQ(Run("restore " + m_backup).status, 0);
    const Outcome plan = Run("restore --delete-others --dry-run " + m_backup);
    EXPECT_EQ(plan.status, 0);
    EXPECT_NE(plan.out.find("\ndelete       Other Berg  (index 30)\n"), std::string::npos) << plan.out;
    Handset().Change(0, [](simulator::Phone& phone) {
        phone.contacts.erase(1);
        phone.contacts.erase(2);
    });
    const Outcome unasked = Run("restore --delete-others " + m_backup);
    EXPECT_EQ(unasked.status, 2);
    EXPECT_NE(unasked.err.find("\"Write 2 contacts to the handset, and then delete 1 contact from it?\""),
              std::string::npos)
        << unasked.err;
    EXPECT_EQ(Contacts(), 22u) << "and nothing was put back before that";
    const std::string copies = (m_folder.Path() / "copies").string();
    const Outcome outcome = Run("restore --delete-others --yes --json --copies " + copies + " " + m_backup);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.out.find("\"deletions\":[{\"title\":\"Other Berg\",\"index\":30,\"result\":\"deleted\"}]"),
              std::string::npos)
        << outcome.out;
    EXPECT_EQ(Contacts(), 23u);
    Run("restore " + copies); // the copies are a backup of what went
    EXPECT_EQ(Contacts(), 24u);
}

TEST_F(Backup, WithoutAHandsetLeavesNothing)
{
    m_simulator.Unplug();
    EXPECT_EQ(Run("backup --wait 1 " + m_backup).status, 1);
    EXPECT_FALSE(std::filesystem::exists(m_backup));
}

// What the list of losses says is what a restore onto an empty handset leaves out.
TEST_F(Backup, SaysBeforehandWhatDoesNotComeBack)
{
    const auto losses = [](const Outcome& outcome) { return outcome.out.substr(outcome.out.find("If all of it")); };
    const std::string first = losses(Run("backup " + m_backup));
    for (const char* line :
         {"  1 contact would come back without Mobile 5550002222: Fran\xC3\xA7ois Lef\xC3\xA8vre\n",
          "  1 contact would not come back, as the handset keeps no contact without a number or an address: (no "
          "name)\n",
          "  3 messages would not come back, as a message without a text cannot be sent: 5551230000, 5551230310, ",
          "  16 messages would come back without the time\n",
          "  20 calls would not come back, as no call list can be written\n"})
        EXPECT_NE(first.find(line), std::string::npos) << line << first;
    Clear();
    Run("restore " + m_backup);
    EXPECT_EQ(Contacts(), 23u);
    EXPECT_EQ(Messages(), 24u);
    const std::string second = losses(Run("backup --force " + m_backup));
    for (const char* line : {"5550002222", "no contact without", "without a text", "the time"})
        EXPECT_EQ(second.find(line), std::string::npos) << second;
}

} // namespace
} // namespace phnctl_test
