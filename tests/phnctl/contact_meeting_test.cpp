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
        if (!cards.empty()) {
            ASSERT_EQ(Run("contacts import " + File("held.vcf", cards)).status, 0);
        }
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

TEST_F(ContactMeeting, CostsNoNumber)
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
        {"two cards of one name", "", Person("Ann Lee", {"C1", "H2"}) + Person("Ann Lee", {"C1", "W3"}), "",
         "Ann Lee: 1 2, Ann Lee: 1 3", "namesake: line 1: another contact of this name is in the files"},
        {"a card that says less than another one", "", Person("Ann Lee", {"C1"}) + Person("Ann Lee", {"H2", "C1"}), "",
         "Ann Lee: 2 1", "2 contacts: 1 added, 1 there already.\n"},
        {"of which one is there already, and one is said twice", Person("Ann Lee", {"C1"}),
         Person("Ann Lee", {"H3", "C1"}) + Person("Ann Lee", {"C1"}) + Person("Ann Lee", {"C1"}), "",
         "Ann Lee: 1, Ann Lee: 3 1", "3 contacts: 1 added, 2 there already.\n"},
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
        Hold(test.held);
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

// The contact of its name changes as by any other card; one of another name is another contact.
TEST_F(ContactMeeting, AnExportThatWasEditedTakesNothingOff)
{
    Hold(Person("Ann Lee", {"C1", "H2"}) + Person("Bob Ray", {"C6", "H7"}));
    EXPECT_EQ(Run("contacts export " + Path("all.vcf")).status, 0);
    std::ifstream stream(Path("all.vcf"));
    std::string text(std::istreambuf_iterator<char>(stream), {});
    for (const auto& [from, to] : {std::pair("HOME:2", "HOME:22"), {"FN:Bob Ray", "FN:Rob Ray"}})
        text.replace(text.find(from), std::string(from).size(), to);
    const std::string command = "contacts import --no-copy " + File("edited.vcf", text);
    const Outcome outcome = Run(command);
    for (const char* says : {"other-place: line 1: Home 22 is stored as Second mobile, as Home is taken",
                             "kept: line 1: Home 2: ", "another contact of the handset has 6: Bob Ray",
                             "2 contacts: 1 added, 1 changed.\n"})
        EXPECT_TRUE(Has(outcome.out, says)) << says << outcome.out;
    EXPECT_EQ(Held(), "Ann Lee: 1 2 22, Bob Ray: 6 7, Rob Ray: 6 7");
    EXPECT_TRUE(Has(Run(command).out, "2 contacts: 2 there already.\n"));
}

} // namespace
} // namespace phnctl_test
