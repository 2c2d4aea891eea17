// phnctl backup and restore: what goes into the folder, and that a restore takes nothing away unasked.
#include "phnctl/handset_run.h"

namespace {

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
    std::size_t Contacts() { return Held().contacts.size(); }
    void Clear()
    {
        Handset().Change(0, [](simulator::Phone& phone) {
            phone.contacts.clear();
            phone.messages.clear();
        });
    }

    const std::string m_backup = Path("backup");
};

TEST_F(Backup, APartThatFailsDoesNotLoseTheOthers)
{
    Handset().AddFault("status=7@17");
    Expect(1, "backup " + m_backup, {"messages: 102 PHN_ERROR_STATUS_7", "The backup is NOT whole.\n"});
    for (const char* file : {"contacts.vcf", "calls.json"})
        EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(m_backup) / file)) << file;
    File("backup/messages.json", "{ broken");
    Clear();
    Expect(1, "restore " + m_backup);
    EXPECT_EQ(Contacts(), 23u);
}

TEST_F(Backup, ARestoreDeletesOnlyWhatItIsToldTo)
{
    Handset().Change(0, [](simulator::Phone& phone) { phone.contacts.erase(21); });
    Expect(0, "backup " + m_backup);
    for (const char* other : {"events.ics", "messages.json", "calls.json"}) // without the time that they take
        std::filesystem::remove(Path("backup") + "/" + other);
    Handset().Change(0, [](simulator::Phone& phone) {
        phone.contacts[30] = phone.contacts[0];
        phone.contacts[30].firstName = "Other";
        phone.contacts.erase(1);
        phone.contacts.erase(2);
    });
    Expect(0, "restore --delete-others --dry-run " + m_backup, {"\ndelete       Other Berg  (index 30)\n"});
    Expect(2, "restore --delete-others " + m_backup,
           {"\"Write 2 contacts to the handset, and then delete 1 contact from it?\""});
    EXPECT_EQ(Contacts(), 22u) << "and nothing was put back before that";
    Expect(0, "restore --delete-others --yes --json --copies " + Path("copies") + " " + m_backup,
           {"\"deletions\":[{\"title\":\"Other Berg\",\"index\":30,\"result\":\"deleted\"}]"});
    EXPECT_EQ(Contacts(), 23u);
    Expect(2, "restore --delete-others --yes " + Path("copies"), {"does not say that it holds all contacts"});
    Run("restore " + Path("copies")); // the copies are a backup of what went
    EXPECT_EQ(Contacts(), 24u);
    Expect(0, "restore " + m_backup);
    EXPECT_EQ(Contacts(), 24u);
}

// What the list of losses says is what a restore onto an empty handset leaves out.
TEST_F(Backup, SaysBeforehandWhatDoesNotComeBack)
{
    Expect(0, "backup " + m_backup,
           {"  1 contact would come back without Mobile 5550002222: François Lefèvre\n",
            "  1 contact would not come back, as the handset keeps no contact without a number or an address: ",
            "  3 messages would not come back, as a message without a text cannot be sent: 5551230000, 5551230310, ",
            "  16 messages would come back without the time\n",
            "  20 calls would not come back, as no call list can be written\n"});
    Expect(2, "backup " + m_backup); // it is not replaced unasked
    Clear();
    Run("restore " + m_backup);
    EXPECT_EQ(Contacts(), 23u);
    EXPECT_EQ(Held().messages.size(), 24u);
    const std::string second = Run("backup --force " + m_backup).out;
    for (const char* line : {"5550002222", "no contact without", "without a text", "the time"})
        EXPECT_FALSE(Has(second, line)) << line << "\n" << second;
}

} // namespace
