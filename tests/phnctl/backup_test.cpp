// phnctl backup and restore: what goes into the folder, and that a restore takes nothing away unasked.
#include "phnctl/handset_run.h"

#include <csignal>
#include <filesystem>

namespace phnctl_test {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t kWriteContact = 36;

class Backup : public HandsetRun
{
protected:
    Backup()
    {
        Handset().Change(0, [](simulator::Phone& phone) { phone.limits.contacts = 64; });
        m_program.Set("PHNNRV_TIME_SCALE", "0.2");
    }
    std::size_t Contacts() { return Handset().Snapshot().contacts.size(); }
    void Clear()
    {
        Handset().Change(0, [](simulator::Phone& phone) { phone.contacts.clear(); });
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
