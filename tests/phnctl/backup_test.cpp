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
    Backup()
    {
        Handset().Change(0, [](simulator::Phone& phone) { phone.limits.contacts = 64; });
        m_program.Set("PHNNRV_TIME_SCALE", "0.2");
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
    ASSERT_EQ(Run("backup " + m_backup).status, 0);
    EXPECT_EQ(Run("backup " + m_backup).status, 2) << "a backup is not replaced unasked";
    Clear();
    Handset().AddFault("delay=30@36");
    const pid_t process = m_program.Start({"restore", m_backup});
    ASSERT_TRUE(Handset().WaitForRequests(kWriteContact, 3, 60s));
    kill(process, SIGINT);
    EXPECT_EQ(m_program.Finish(process).status, 130);
    const std::size_t written = Contacts();
    EXPECT_LT(written, 43u);
    Handset().ClearFaults();
    Run("restore " + m_backup);
    EXPECT_EQ(Contacts(), 43u); // one of the 44 has neither number nor address
    EXPECT_EQ(Handset().Requests(kWriteContact), 43u);
    EXPECT_EQ(Run("restore " + m_backup + " --json").out.find("\"written\":1"), std::string::npos);
    EXPECT_EQ(Handset().Requests(kWriteContact), 43u);
}

// They come back without their times; those that are there are not saved twice.
TEST_F(Backup, MessagesComeBackOnce)
{
    Handset().Change(0, [](simulator::Phone& phone) { // what has no text cannot be written
        std::erase_if(phone.messages, [](const auto& item) { return item.second.body.empty(); });
    });
    ASSERT_EQ(Run("backup " + m_backup).status, 0);
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
    EXPECT_EQ(Contacts(), 43u);
}

TEST_F(Backup, ARestoreDeletesOnlyWhatItIsToldTo)
{
    Handset().Change(0, [](simulator::Phone& phone) { phone.contacts.erase(21); });
    ASSERT_EQ(Run("backup " + m_backup).status, 0);
    Handset().Change(0, [](simulator::Phone& phone) {
        phone.contacts[50] = phone.contacts[0];
        phone.contacts[50].firstName = "Other";
    });
    EXPECT_EQ(Run("restore " + m_backup).status, 0);
    EXPECT_EQ(Run("restore --delete-others --dry-run " + m_backup).status, 0);
    EXPECT_NE(Run("restore --delete-others " + m_backup).status, 0) << "nobody was asked";
    EXPECT_EQ(Contacts(), 44u);
    const std::string copy = (m_folder.Path() / "copy.vcf").string();
    EXPECT_EQ(Run("restore --delete-others --yes --copy " + copy + " " + m_backup).status, 0);
    EXPECT_EQ(Contacts(), 43u);
    EXPECT_TRUE(std::filesystem::exists(copy));
}

} // namespace
} // namespace phnctl_test
