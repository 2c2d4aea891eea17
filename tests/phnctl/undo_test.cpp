// The way back: runs that are taken back, finished after they were cut off, or left alone.
#include "phnctl/handset_run.h"
#include "simulator/handset/exchange.h"

#include <csignal>

namespace {

class Undo : public HandsetRun
{
protected:
    Undo()
    {
        m_program.Set("XDG_STATE_HOME", Path("state"));
        // What the library's texts do not carry as it is stored.
        Handset().Change(0, [](simulator::Phone& phone) {
            phone.limits.contacts = phone.limits.events = 56; // many runs ask for all
            for (const std::uint32_t id : {6, 21, 22, 25})
                phone.contacts.erase(id);
            std::erase_if(phone.events, [](const auto& event) { return event.second.repeatType == 3; });
        });
    }

    // New ones and a changed one among them.
    std::string Cards()
    {
        std::string text = Card("Anna Berg", {"C5550009999"});
        for (int i = 0; i < 5; ++i)
            text += Card("New " + std::to_string(i), {"C555123001" + std::to_string(i)});
        return File("cards.vcf", text);
    }
    void KillIn(const std::string& words, std::uint32_t command, unsigned nth)
    {
        std::atomic<pid_t> process = 0;
        unsigned count = 0;
        Handset().SetWatcher([&](const simulator::Exchange& exchange) {
            if (exchange.command == command && ++count == nth)
                kill(process.load(), SIGKILL);
        });
        process = m_program.Start(words);
        EXPECT_EQ(m_program.Finish(process).status, 256 + SIGKILL) << words;
        Handset().SetWatcher({});
    }
};

TEST_F(Undo, PutsBackWhatARunHasAddedChangedAndDeleted)
{
    const std::string backup = Path("backup");
    Expect(0, "backup " + backup);
    const std::string before = Entries();
    for (const std::string& words :
         {"contacts import " + Cards(), "contacts put " + File("one.vcf", Card("One", {"C1234567"})) + " 2",
          std::string("contacts delete --yes 0 3"), std::string("contacts clear --yes"),
          std::string("events clear --yes")}) {
        ASSERT_EQ(Run(words).status, 0) << words;
        EXPECT_TRUE(Entries() != before) << words;
        Expect(0, "undo --yes");
        EXPECT_TRUE(Entries() == before) << words;
    }
    Handset().Change(0, [](simulator::Phone& phone) {
        phone.contacts.erase(0);
        phone.contacts[1].firstName = "Other";
    });
    const std::string changed = Entries();
    Run("restore --yes --delete-others " + backup);
    EXPECT_TRUE(Entries() != changed);
    Expect(0, "undo --yes");
    EXPECT_TRUE(Entries() == changed);
    Expect(2, "undo --yes", {"phnctl: there is no run to take back.\n"});
    Expect(0, "undo --list", {"-events-clear ", "settled"});
}

TEST_F(Undo, MessagesComeBackNewlySaved)
{
    const std::size_t before = Held().messages.size();
    Expect(0, "messages clear 0 --yes");
    ASSERT_LT(Held().messages.size(), before);
    Expect(1, "undo --dry-run", {"6 messages: 3 to add, 3 that the handset cannot hold.\n"});
    Expect(1, "undo --yes", {"cannot hold  5551230000\n    not-writable: a message without a text cannot be sent\n"});
    EXPECT_EQ(Held().messages.size(), before - 3);
    Expect(2, "undo --yes", {"there is no run to take back."}); // more cannot be done
    const std::string runs = Run("undo --list").out;
    const std::size_t clear = runs.rfind('\n', runs.find("-messages-clear ")) + 1;
    Expect(1, "undo --yes " + runs.substr(clear, runs.find(' ', clear) - clear),
           {"6 messages: 3 there already, 3 that"});
    EXPECT_EQ(Held().messages.size(), before - 3);
    Expect(0, "undo --list", {"-messages-clear "});
}

TEST_F(Undo, ARunThatWasKilledIsTakenBackOrFinished)
{
    constexpr std::uint32_t kSetContact = 36;
    const std::string before = Entries();
    const std::string import = "contacts import " + Cards();
    ASSERT_EQ(Run(import).status, 0);
    const std::string after = Entries();
    Expect(0, "undo --yes");
    for (const unsigned nth : {1u, 4u, 6u}) {
        KillIn(import, kSetContact, nth);
        Expect(0, "undo --yes");
        EXPECT_TRUE(Entries() == before) << nth;
        KillIn(import, kSetContact, nth);
        Expect(0, "resume --yes");
        EXPECT_TRUE(Entries() == after) << nth;
        Expect(0, "undo --yes"); // both runs
        EXPECT_TRUE(Entries() == before) << nth;
    }
}

TEST_F(Undo, LeavesWhatIsSomethingElseByNow)
{
    Expect(0, "contacts import " + Cards());
    Handset().Change(0, [](simulator::Phone& phone) {
        for (auto& [id, contact] : phone.contacts)
            if (contact.lastName == "3" || contact.firstName == "Anna")
                contact.firstName = "Other";
    });
    const std::size_t count = Held().contacts.size();
    Expect(0, "undo --dry-run",
           {"left out     New 3\n    changed-since: ", "left out     Anna Berg  (index 0)\n    changed-since: ",
            "4 contacts of the handset to delete"});
    Expect(1, "undo --yes --force",
           {"changed      Anna Berg  (index 0)\n    Name: Other Berg -> Anna Berg\n",
            "One has changed since, and stays.\n"});
    EXPECT_EQ(Held().contacts.size(), count - 4);
    EXPECT_EQ(Held().contacts.at(0).firstName, "Anna");
}

TEST_F(Undo, LeavesARunOfWhichAllHasChangedToBeTakenBackLater)
{
    const std::string former = Held().contacts.at(4).firstName;
    Expect(0, "contacts put " + File("one.vcf", Card("One", {"C1234567"})) + " 4");
    const auto rename = [this](const char* name) {
        Handset().Change(0, [&](simulator::Phone& phone) { phone.contacts[4].firstName = name; });
    };
    rename("Two");
    Expect(1, "undo --yes", {"One has changed since, and stays; --force takes more back.\n"});
    rename("One");
    Expect(2, "--simulator undo", {"no run on it is kept"});
    Expect(0, "undo --yes");
    EXPECT_EQ(Held().contacts.at(4).firstName, former);
}

TEST_F(Undo, IsOfOneHandset)
{
    Expect(0, "contacts clear --yes");
    Handset().Set("identity/esn", "12345");
    Expect(1, "undo --yes",
           {"was on another handset, Fjord 40 with the serial number 15901193046. Nothing was changed."});
    EXPECT_TRUE(Held().contacts.empty());
}

TEST_F(Undo, NothingIsWrittenWithoutAJournal)
{
    m_program.Set("XDG_STATE_HOME", File("no-folder", ""));
    const std::string before = Entries();
    Expect(1, "contacts import " + Cards(), {"Nothing was changed."});
    EXPECT_TRUE(Entries() == before);
    Expect(0, "contacts import --no-copy " + Cards());
    EXPECT_TRUE(Entries() != before);
}

} // namespace
