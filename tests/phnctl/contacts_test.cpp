// phnctl contacts with a handset: what goes over, what comes back, and that nothing is lost on the way.
#include "phnctl/handset_run.h"

#include <csignal>
#include <tuple>

namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t kWrite = 36;

std::string Cards(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += Card("Person " + std::to_string(i), {"C" + std::to_string(1000 + i)});
    return text;
}

class Contacts : public HandsetRun
{
protected:
    auto Stored() { return Held().contacts; }
    void Empty()
    {
        Handset().Change(0, [](simulator::Phone& phone) { phone.contacts.clear(); });
    }
};

TEST_F(Contacts, ShowsThemWithTheNamesOfTheirIds)
{
    Expect(0, "contacts list --range 0-4",
           {"4      Åse Ødegård   +475552000  +475552002  +475552003  aase5@example.org     4      +3\n",
            "\n5 contacts\n"});
    // One that cannot be read costs only itself.
    Handset().AddFault("result=9@35*1");
    Expect(1, "contacts list", {"\n43 contacts\n", "contact 0 was not read: "});
    Expect(0, "contacts get 4",
           {"Second mobile   +475552001\n", "Group           Harbour crew (4)\n", "Picture         Café au lait (4)\n",
            "Ringer          Quiet (4)\n", "Default number  Home (2)\n"});
    Expect(1, "contacts get 7");
}

TEST_F(Contacts, ComeBackFromAnExportWithoutALoss)
{
    Expect(0, "contacts export --folder " + Path("single"));
    Expect(0, "contacts clear --yes --copy " + Path("copy.vcf"));
    ASSERT_TRUE(Stored().empty());
    // All but the one that has neither number nor address.
    Expect(1, "contacts import " + Path("copy.vcf"),
           {"44 contacts: 43 added, 1 that the handset cannot hold.\n43 of 44"});
    Expect(1, "contacts import --json " + Path("single"), {"\"add\":0,\"change\":0,\"same\":43,\"cannotHold\":1"});
}

TEST_F(Contacts, TextLostToTheCodePageIsNeverWrittenOverTheTextOrTakenForACopy)
{
    const auto before = Stored();
    m_program.Set("PHNNRV_ANSI_CODE_PAGE", "1252");
    Expect(1, "contacts export --json " + Path("lossy.vcf"), {"\"textLost\":10"});
    Expect(1, "backup " + Path("backup"));
    for (const char* words : {"contacts clear", "contacts delete 11"})
        Expect(1, words + (" --yes --copy " + Path("copy.vcf")));
    // The handset's name is not what a card of the same '?' says.
    Expect(1, "contacts put " + File("same.vcf", Card("??", {"C7"})) + " 11");
    EXPECT_EQ(Stored().size(), before.size());
    EXPECT_EQ(Stored().at(11).firstName, before.at(11).firstName);
}

TEST_F(Contacts, ImportTwiceFindsNothingToDoAndNewOnesNeverOverwrite)
{
    const auto before = Stored();
    const std::string file = File("new.vcf", Cards(12) + Card("Person 3", {"C1003"}));
    Expect(0, "contacts import --dry-run " + file, {"13 contacts: 12 to add, 1 there already.\n"});
    EXPECT_EQ(Handset().Requests(kWrite), 0u);
    Expect(0, "contacts import " + file, {"13 contacts: 12 added, 1 there already.\n13 of 13 are on the handset.\n"});
    auto after = Stored();
    EXPECT_EQ(after.size(), before.size() + 12);
    for (const auto& [id, contact] : before)
        EXPECT_EQ(after[id].firstName, contact.firstName) << id;
    Expect(0, "contacts import " + file, {"13 contacts: 13 there already.\n"});
    EXPECT_EQ(Handset().Requests(kWrite), 12u);
}

TEST_F(Contacts, AChangeShowsItselfKeepsACopyAndWhatTheCardLeavesOpen)
{
    const std::string file = File("change.vcf", Card("Zoë Müller", {"C777"}));
    Expect(0, "contacts import --dry-run " + file,
           {"    Mobile: (nothing) -> 777\n1 contact: 1 to change.\n1 of them has more"});
    Expect(0, "contacts import --replace " + file + " --copy " + Path("copy.vcf"),
           {"Zoë Müller  (index 3)\n", "    Mobile: (nothing) -> 777\n", "    Work: 5551000411 -> (nothing)\n"});
    const simulator::Contact changed = Stored()[3];
    EXPECT_EQ(changed.entries.size(), 1u);
    EXPECT_EQ(changed.ringer, 3u);
    Expect(0, "contacts import --replace --no-copy " + Path("copy.vcf"));
    EXPECT_EQ(Stored()[3].entries.front().value, "5551000411");
    // No copy, no change.
    Expect(1, "contacts import --replace " + file + " --copy /nonexistent/copy.vcf");
    EXPECT_EQ(Stored()[3].entries.front().value, "5551000411");
}

TEST_F(Contacts, APlanSaysWhatATextOfTheHandsetCannotBringAlong)
{
    Handset().Change(0,
                     [](simulator::Phone& phone) { phone.contacts[3].firstName = "Zoë\r\nTEL;TYPE=WORK:6\r\n\x1B"; });
    Expect(0, "contacts put --dry-run " + File("change.vcf", Card("Zoë", {"W7"})) + " 3",
           {"    control-characters: line 1: the handset's Work, '6\\x0D\\x0A\\x1B Müller': its control characters do",
            "    held-twice: line 1: the handset's contact has Work twice"});
    Expect(0, "contacts import --dry-run " + File("org.vcf", Card("Ann", {"C1\nORG:Harbour\nNOTE:x"})),
           {"    dropped: ORG, line 5; NOTE, line 6: the handset has no place for them\n1 contact"});
    const std::string card = Expect(0, "contacts get --text 3").out;
    EXPECT_TRUE(Has(card, "TEL;TYPE=WORK:6\\n\\\\x1B Müller\r\n")) << card;
}

TEST_F(Contacts, OneBadCardDoesNotStopTheRestUnlessStrict)
{
    Empty();
    const std::string file = File("mixed.vcf", Cards(2) + Card("Nobody", {}) + Card("Last", {"C9"}));
    Expect(1, "contacts import --strict " + file);
    EXPECT_TRUE(Stored().empty());
    Expect(1, "contacts import " + file,
           {"mixed.vcf:11  Nobody\n    no-number: ", "4 contacts: 3 added, 1 that the handset cannot hold.\n3 of 4"});
    EXPECT_EQ(Stored().size(), 3u);
}

TEST_F(Contacts, TellsWhenTheHandsetHoldsSomethingElse)
{
    // The group that every read reports.
    Handset().AddFault("patch=24,9@35");
    Expect(1, "contacts put " + File("one.vcf", Card("New", {"C1"})) + " 60",
           {"DIFFERENT", "    read back differs, Group: 0 -> 9\n", "It is not on the handset.\n"});
}

TEST_F(Contacts, GoOnWhereAnInterruptedImportStopped)
{
    Empty();
    const std::string file = File("many.vcf", Cards(40));
    Handset().AddFault("delay=30@36");
    const pid_t process = m_program.Start("contacts import " + file);
    ASSERT_TRUE(Handset().WaitForRequests(kWrite, 3, 60s));
    kill(process, SIGINT);
    const Outcome stopped = m_program.Finish(process);
    const std::size_t written = Stored().size();
    EXPECT_LT(written, 40u);
    ::Expect(stopped, 130, {std::to_string(written) + " of 40 are on the handset.\nRun it again"});
    Handset().ClearFaults();
    Expect(0, "contacts import " + file,
           {std::to_string(40 - written) + " added, " + std::to_string(written) + " there already"});
    EXPECT_EQ(Stored().size(), 40u);
}

TEST_F(Contacts, ARefusalFailsOneEntryALossEndsTheRest)
{
    const std::string file = File("four.vcf", Cards(4));
    const std::pair<const char*, const char*> cases[] = {
        {"result=9@36*1", "4 contacts: 3 added, 1 failed.\n"},
        {"result=4@36*1", "4 contacts: 1 failed, 3 not tried.\n0 of 4 are on the handset.\nThe handset is full"},
        {"result=4@36*1", "    the handset is full after "},
        {"unplug@36*1", " not tried.\n"}};
    for (const auto& [fault, says] : cases) {
        SCOPED_TRACE(fault);
        Empty();
        Handset().AddFault(fault);
        Expect(1, "contacts import " + file, {says});
    }
}

TEST_F(Contacts, NothingIsDeletedUnaskedOrWithoutACopy)
{
    for (const char* words : {"clear", "delete 4 5 --yes --copy /nonexistent/copy.vcf", "delete 4 7 --yes --no-copy"})
        EXPECT_NE(Run(std::string("contacts ") + words).status, 0) << words;
    // Without all of them there is no whole copy.
    Handset().AddFault("result=9@35*1");
    Expect(1, "contacts clear --yes --copy " + Path("part.vcf"));
    EXPECT_EQ(Stored().size(), 44u);
    Expect(0, "contacts delete 4 5 --yes --copy " + Path("copy.vcf"));
    Expect(0, "contacts delete 3 --yes --copy " + Path("copy.vcf"), {Path("copy-2.vcf")}); // the first one stays
    EXPECT_EQ(Stored().size(), 41u);
    EXPECT_TRUE(Has(ReadAll(Path("copy.vcf")), "Åse"));
}

// Which contact of the handset a card means, and that an import takes no number off it.
TEST_F(Contacts, CostNoNumberWhenACardMeetsThem)
{
    Handset().Change(0, [](simulator::Phone& phone) { phone.limits.contacts = 12; });
    const std::string full = Card("Ann Lee", {"C1", "H2", "W3", "M4"});
    // What the handset holds, the cards, the options, what it holds then, and what is said.
    const std::tuple<const char*, std::string, std::string, std::string, const char*, const char*> cases[] = {
        {"a namesake's number goes beside", Card("Ann Lee", {"C1", "Ea"}), Card("ann  LEE", {"C2"}), "",
         "Ann Lee: 1 a 2", "other-place: line 1: Mobile 2 is stored as Second mobile, as Mobile is taken"},
        {"or instead, when asked for", Card("Ann Lee", {"C1", "Ea"}), Card("Ann Lee", {"C2"}), "--replace ",
         "Ann Lee: 2", "Mobile: 1 -> 2"},
        {"or makes a contact of its own", full, Card("Ann Lee", {"C5"}), "", "Ann Lee: 1 2 3 4, Ann Lee: 5",
         "namesake: line 1: the contact of this name on the handset has no free place for Mobile 5"},
        {"two cards of one name", "", Card("Ann Lee", {"C1", "H2"}) + Card("Ann Lee", {"C1", "W3"}), "",
         "Ann Lee: 1 2, Ann Lee: 1 3", "namesake: line 1: another contact of this name is in the files"},
        {"one is there already, one says less than another", Card("Ann Lee", {"C1"}),
         Card("Ann Lee", {"C1"}) + Card("Ann Lee", {"H3", "C1"}) + Card("Ann Lee", {"C1"}), "",
         "Ann Lee: 1, Ann Lee: 3 1", "3 contacts: 1 added, 2 there already.\n"},
        {"another name", Card("Ann Lee", {"C1"}), Card("Ann Poe", {"H2", "C1"}), "", "Ann Lee: 1, Ann Poe: 2 1",
         "shared-number: line 1: another contact of the handset has 1: Ann Lee"},
    };
    const auto held = [&] {
        std::string text;
        for (const auto& [index, contact] : Stored()) {
            text += (text.empty() ? "" : ", ") + contact.firstName + " " + contact.lastName + ":";
            for (const auto& entry : contact.entries)
                text += " " + entry.value;
        }
        return text;
    };
    for (const auto& [what, before, cards, options, after, says] : cases) {
        SCOPED_TRACE(what);
        Empty();
        if (!before.empty())
            Expect(0, "contacts import " + File("held.vcf", before));
        const std::string command = "contacts import --no-copy " + options + File("new.vcf", cards);
        Expect(0, command, {says});
        EXPECT_EQ(held(), after);
        EXPECT_FALSE(Has(Run(command).out, "changed")) << "a second time";
        EXPECT_EQ(held(), after);
    }
}

} // namespace
