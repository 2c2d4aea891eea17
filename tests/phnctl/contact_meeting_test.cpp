// Which contact of the handset a card means, and that an import takes no number off it.
#include "phnctl/contacts_run.h"

#include <gtest/gtest.h>

namespace phnctl_test {
namespace {

class ContactMeeting : public Contacts
{
protected:
    ContactMeeting()
    {
        Handset().Change(0, [](simulator::Phone& phone) {
            phone.limits.contacts = 12;
            phone.contacts.clear();
        });
    }

    // "Ann Lee: 1 2" for each contact, in the order of their indexes.
    std::string Held()
    {
        std::string text;
        for (const auto& [index, contact] : Stored()) {
            text += (text.empty() ? "" : ", ") + contact.firstName + " " + contact.lastName + ":";
            for (const auto& entry : contact.entries)
                text += " " + entry.value;
        }
        return text;
    }
    void Hold(const std::string& cards)
    {
        Empty();
        ASSERT_EQ(Run("contacts import " + File("held.vcf", cards)).status, 0);
    }
};

// Lines in short: C is a mobile, H a home, W a work number, M the second mobile, E an address.
std::string Person(const std::string& name, const std::vector<std::string>& values)
{
    std::string text = "BEGIN:VCARD\nVERSION:3.0\nFN:" + name + "\n";
    const std::map<char, std::string> properties{{'C', "TEL;TYPE=CELL:"},
                                                 {'H', "TEL;TYPE=HOME:"},
                                                 {'W', "TEL;TYPE=WORK:"},
                                                 {'M', "X-PHN-MOBILE-2:"},
                                                 {'E', "EMAIL:"}};
    for (const std::string& value : values)
        text += properties.at(value.front()) + value.substr(1) + "\n";
    return text + "END:VCARD\n";
}

TEST_F(ContactMeeting, CostsNoNumberAndMakesNoSecondContactOfOnePerson)
{
    const std::string full = Person("Ann Lee", {"C1", "H2", "W3", "M4"});
    const struct
    {
        const char* what;
        std::string held;
        std::string cards;
        const char* options;
        const char* after;
        const char* says;
    } cases[] = {
        {"a namesake's number goes beside", Person("Ann Lee", {"C1", "Ea"}), Person("ann  LEE", {"C2"}), "",
         "Ann Lee: 1 a 2", "other-place: line 1: Mobile 2 is stored as Second mobile, as Mobile is taken"},
        {"or instead, when asked for", Person("Ann Lee", {"C1", "Ea"}), Person("Ann Lee", {"C2"}), "--replace ",
         "Ann Lee: 2", "Mobile: 1 -> 2"},
        {"or makes a contact of its own", full, Person("Ann Lee", {"C5"}), "", "Ann Lee: 1 2 3 4, Ann Lee: 5",
         "namesake: line 1: the contact of this name on the handset has no free place for Mobile 5"},
        {"two cards of one person", "", Person("Ann Lee", {"C1", "H2"}) + Person("Ann Lee", {"C1", "W3"}), "",
         "Ann Lee: 1 2 3", "2 contacts: 1 added, 1 in one with another.\n2 of 2 are on the handset.\n"},
        {"of which one is there already", Person("Ann Lee", {"C1"}),
         Person("Ann Lee", {"C1"}) + Person("Ann Lee", {"H3", "C1"}) + Person("Ann Lee", {"W4", "H3"}), "",
         "Ann Lee: 1 3 4", "3 contacts: 1 changed, 2 in one with another.\n"},
        {"of which the handset has a namesake", Person("Ann Lee", {"W9"}),
         Person("Ann Lee", {"C1"}) + Person("Ann Lee", {"C1", "H2"}), "", "Ann Lee: 9 1 2",
         "2 contacts: 1 changed, 1 in one with another.\n"},
        {"that say otherwise where the number goes", "", Person("Ann Lee", {"C1"}) + Person("Ann Lee", {"H1"}), "",
         "Ann Lee: 1", "2 contacts: 1 added, 1 in one with another.\n"},
        {"two cards that do not fit in one", "", full + Person("Ann Lee", {"C1", "H5"}), "",
         "Ann Lee: 1 2 3 4, Ann Lee: 1 5", "of this name in the files has no free place for Home 5"},
        {"namesakes with nothing in common", Person("Ann Lee", {"C1"}),
         Person("Ann Lee", {"C2"}) + Person("Ann Lee", {"C3"}), "", "Ann Lee: 1, Ann Lee: 2, Ann Lee: 3",
         "namesake: line 1: another contact of this name is on the handset"},
        {"another name", Person("Ann Lee", {"C1"}), Person("Ann Poe", {"H2", "C1"}), "", "Ann Lee: 1, Ann Poe: 2 1",
         "shared-number: line 1: another contact of the handset has 1: Ann Lee"},
        {"nothing new", full, Person("Ann Lee", {"C1", "H2", "W3"}), "", "Ann Lee: 1 2 3 4",
         "Ann Lee  (index 0)\n    kept: line 1: Second mobile 4: only the handset has it"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        Hold(test.held.empty() ? Person("A B", {"C9"}) : test.held);
        if (test.held.empty())
            Empty();
        const std::string command =
            std::string("contacts import --no-copy ") + test.options + File("new.vcf", test.cards);
        const Outcome outcome = Run(command);
        EXPECT_EQ(outcome.status, 0) << outcome.out;
        EXPECT_EQ(Held(), test.after);
        EXPECT_TRUE(Has(outcome.out, test.says)) << outcome.out;
        EXPECT_FALSE(Has(Run(command).out, "changed")) << "a second time";
        EXPECT_EQ(Held(), test.after);
    }
}

// What the file says counts, as long as the handset's contact has what the file was made of.
TEST_F(ContactMeeting, AnExportThatWasEditedChangesItsContacts)
{
    Hold(Person("Ann Lee", {"C1", "H2", "W3"}) + Person("Bob Ray", {"C6", "H7"}));
    EXPECT_EQ(Run("contacts put " + File("second.vcf", Person("Ann Lee", {"C1", "H5"}))).status, 0);
    const auto edited = [&](const std::vector<std::pair<std::string, std::string>>& edits, std::string of = {}) {
        if (of.empty()) {
            of = Path("all.vcf");
            std::filesystem::remove(of);
            EXPECT_EQ(Run("contacts export " + of).status, 0);
        }
        std::ifstream stream(of);
        std::string text(std::istreambuf_iterator<char>(stream), {});
        for (const auto& [from, to] : edits)
            text.replace(text.find(from), from.size(), to);
        return File("edited.vcf", text);
    };
    const std::string file = edited({{"HOME:2", "HOME:22"}, {"HOME:5", "HOME:55"}, {"FN:Bob Ray", "FN:Rob Ray"}});
    const Outcome outcome = Run("contacts import --no-copy " + file);
    EXPECT_TRUE(Has(outcome.out, "3 contacts: 3 changed.\n")) << outcome.out;
    const std::string after = "Ann Lee: 1 22 3, Rob Ray: 6 7, Ann Lee: 1 55";
    EXPECT_EQ(Held(), after);
    EXPECT_TRUE(Has(Run("contacts import " + file).out, "3 contacts: 3 there already.\n"));
    // The same file again, with a change more.
    Run("contacts import --no-copy " + edited({{"CELL:6", "CELL:66"}}, file));
    EXPECT_TRUE(Has(Held(), "Rob Ray: 66 7,")) << Held();
    Run("contacts import --replace --no-copy " + edited({{"CELL:66", "CELL:6"}}, file));
    // Put back on an empty handset, none goes into one with another.
    Empty();
    EXPECT_EQ(Run("contacts import " + file).status, 0);
    EXPECT_EQ(Held(), after);
    // The contact has another number by now: it keeps it.
    const std::string late = edited({{"HOME:7", "HOME:77"}});
    Hold(Person("Rob Ray", {"C6", "H8"}));
    Run("contacts import --no-copy " + late);
    EXPECT_TRUE(Has(Held(), "Rob Ray: 6 8 77")) << Held();
}

TEST_F(ContactMeeting, ACopiedCardThatBecameAnotherPersonsIsAnotherContact)
{
    Hold(Person("Ann Lee", {"C1", "Ea"}));
    EXPECT_EQ(Run("contacts export " + Path("all.vcf")).status, 0);
    std::ifstream stream(Path("all.vcf"));
    const std::string card(std::istreambuf_iterator<char>(stream), {});
    std::string other = card;
    for (const auto& [from, to] : {std::pair("FN:Ann Lee", "FN:Zoe Fox"), {"CELL:1", "CELL:2"}, {"EMAIL:a", "EMAIL:b"}})
        other.replace(other.find(from), std::string(from).size(), to);
    for (const char* told : {"2 contacts: 1 added, 1 there already.\n", "2 contacts: 2 there already.\n"}) {
        const Outcome outcome = Run("contacts import --no-copy " + File("copied.vcf", other + card));
        EXPECT_TRUE(Has(outcome.out, told)) << outcome.out;
        EXPECT_EQ(Held(), "Ann Lee: 1 a, Zoe Fox: 2 b");
    }
    // An edit of the original beside it.
    std::string edit = card;
    edit.replace(edit.find("CELL:1"), 6, "CELL:3");
    Hold(Person("Ann Lee", {"C1", "Ea"}));
    EXPECT_EQ(Run("contacts import --no-copy " + File("copied.vcf", other + edit)).status, 0);
    EXPECT_EQ(Held(), "Ann Lee: 3 a, Zoe Fox: 2 b");
}

} // namespace
} // namespace phnctl_test
