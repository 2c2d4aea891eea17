// phnctl contacts with a handset: what goes over, what comes back, and that nothing is lost on the way.
#include "phnctl/contacts_run.h"

#include <csignal>
#include <gtest/gtest.h>

namespace phnctl_test {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t kWrite = 36;

// Cards of persons with names and numbers of their own.
std::string Cards(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += Card("Person " + std::to_string(i), std::to_string(1000 + i));
    return text;
}

TEST_F(Contacts, ShowsThemWithTheNamesOfTheirIds)
{
    const Outcome list = Run("contacts list --range 0-4");
    EXPECT_EQ(list.status, 0) << list.err;
    EXPECT_TRUE(
        Has(list.out, "4      Åse Ødegård   +475552000  +475552002  +475552003  aase5@example.org     4      +3\n"))
        << list.out;
    EXPECT_TRUE(Has(list.out, "\n5 contacts\n")) << list.out;
    const Outcome one = Run("contacts get 4");
    for (const char* line :
         {"Second mobile   +475552001\n", "Group           Harbour crew (4)\n", "Picture         Café au lait (4)\n",
          "Ringer          Quiet (4)\n", "Default number  Home (2)\n"})
        EXPECT_TRUE(Has(one.out, line)) << line << one.out;
    EXPECT_EQ(Run("contacts get 7").status, 1);
    EXPECT_TRUE(Has(Run("contacts sizes --json").out, "\"dwFieldSize8\":64,\"dwFieldSize9\":44"));
}

TEST_F(Contacts, ComeBackFromAnExportWithoutALoss)
{
    const std::string copy = " --yes --copy " + Path("copy.vcf");
    ASSERT_EQ(Run("contacts export " + Path("all.vcf")).status, 0);
    ASSERT_EQ(Run("contacts export --folder " + Path("single")).status, 0);
    const auto before = Run("contacts list --json").out;
    for (const char* source : {"all.vcf", "single", "copy.vcf"}) {
        SCOPED_TRACE(source);
        const Outcome none = Run("contacts import " + Path(source) + " --json");
        EXPECT_EQ(none.status, 0) << none.err;
        EXPECT_TRUE(Has(none.out, "\"add\":0,\"change\":0,\"same\":44,\"cannotHold\":0")) << none.out;
        std::filesystem::remove(Path("copy.vcf"));
        ASSERT_EQ(Run("contacts clear" + copy).status, 0);
        ASSERT_TRUE(Stored().empty());
        // All but the one that has neither number nor address.
        const Outcome back = Run("contacts import " + Path(source));
        EXPECT_EQ(back.status, 1) << back.err;
        EXPECT_TRUE(Has(back.out, "44 contacts: 43 added, 1 that the handset cannot hold.\n43 of 44")) << back.out;
        EXPECT_EQ(Stored().size(), 43u);
        Handset().Change(0, [](simulator::Phone& phone) { phone.contacts = simulator::DefaultPhone().contacts; });
    }
    EXPECT_EQ(Run("contacts list --json").out, before);
}

TEST_F(Contacts, TextLostToTheCodePageIsNeverWrittenOverTheTextOrTakenForACopy)
{
    const auto greek = [&] { return Stored()[11].firstName; };
    const auto before = Stored();
    ASSERT_EQ(Run("contacts export " + Path("whole.vcf")).status, 0);
    m_program.Set("PHNNRV_ANSI_CODE_PAGE", "1252");
    const Outcome lossy = Run("contacts export --json " + Path("lossy.vcf"));
    EXPECT_EQ(lossy.status, 1);
    EXPECT_TRUE(Has(lossy.out, "\"textLost\":10")) << lossy.out << lossy.err;
    EXPECT_EQ(Run("backup " + Path("backup")).status, 1);
    for (const std::string words : {"contacts clear --yes --copy ", "contacts delete 11 --yes --copy "})
        EXPECT_EQ(Run(words + Path("copy.vcf")).status, 1) << words;
    EXPECT_EQ(Stored().size(), before.size());
    // The handset's name is not what a card of the same '?' says.
    File("same.vcf", Card("??", "7"));
    EXPECT_EQ(Run("contacts put " + Path("same.vcf") + " 11").status, 1);
    EXPECT_EQ(greek(), before.at(11).firstName);
    m_program.Set("PHNNRV_ANSI_CODE_PAGE", "65001");
    const Outcome refused = Run("contacts import --json " + Path("lossy.vcf"));
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(Has(refused.out, "\"cannotHold\":10")) << refused.out;
    EXPECT_EQ(greek(), before.at(11).firstName);
    EXPECT_TRUE(Has(Run("contacts import --json " + Path("whole.vcf")).out, "\"same\":44"));
}

TEST_F(Contacts, AFileWithoutACardIsNoImport)
{
    EXPECT_EQ(Run("contacts import " + File("empty.vcf", "")).status, 2);
}

TEST_F(Contacts, ImportTwiceFindsNothingToDoAndNewOnesNeverOverwrite)
{
    const auto before = Stored();
    // Indexes that end in 7 are stored elsewhere by this handset.
    const std::string file = File("new.vcf", Cards(12) + Card("Person 3", "1003"));
    const Outcome plan = Run("contacts import --dry-run " + file);
    EXPECT_TRUE(Has(plan.out, "13 contacts: 12 to add, 1 there already.\n")) << plan.out;
    EXPECT_EQ(Handset().Requests(kWrite), 0u);
    const Outcome first = Run("contacts import " + file);
    EXPECT_EQ(first.status, 0) << first.out << first.err;
    EXPECT_TRUE(Has(first.out, "13 contacts: 12 added, 1 there already.\n13 of 13 are on the handset.\n")) << first.out;
    auto after = Stored();
    EXPECT_EQ(after.size(), before.size() + 12);
    for (const auto& [id, contact] : before)
        EXPECT_EQ(after[id].firstName, contact.firstName);
    EXPECT_TRUE(Has(Run("contacts import " + file).out, "13 contacts: 13 there already.\n"));
    EXPECT_EQ(Handset().Requests(kWrite), 12u);
}

TEST_F(Contacts, AChangeShowsItselfKeepsACopyAndWhatTheCardLeavesOpen)
{
    const std::string copy = " --copy " + Path("copy.vcf");
    const std::string file = File("change.vcf", Card("Zoë Müller", "777"));
    const Outcome merged = Run("contacts import --dry-run " + file);
    EXPECT_TRUE(Has(merged.out, "    Mobile: (nothing) -> 777\n1 contact: 1 to change.\n1 of them has more"))
        << merged.out;
    const Outcome outcome = Run("contacts import --replace " + file + copy);
    EXPECT_EQ(outcome.status, 0) << outcome.out << outcome.err;
    for (const char* line : {"Zoë Müller  (index 3)\n", "    Mobile: (nothing) -> 777\n",
                             "    Work: 5551000411 -> (nothing)\n", "    Speed dials: 0,0,4,0,0 -> 0,0,0,0,0\n"})
        EXPECT_TRUE(Has(outcome.out, line)) << line << outcome.out;
    const simulator::Contact changed = Stored()[3];
    EXPECT_EQ(changed.entries.size(), 1u);
    EXPECT_EQ(changed.group, 3u);
    EXPECT_EQ(changed.ringer, 3u);
    EXPECT_EQ(Run("contacts import --replace --no-copy " + Path("copy.vcf")).status, 0);
    EXPECT_EQ(Stored()[3].entries.front().value, "5551000411");
    // No copy, no change.
    EXPECT_EQ(Run("contacts import " + file + " --copy /nonexistent/copy.vcf").status, 1);
    EXPECT_EQ(Stored()[3].entries.front().value, "5551000411");
}

TEST_F(Contacts, AFullHandsetIsForeseen)
{
    const Outcome outcome = Run("contacts import --dry-run " + File("many.vcf", Cards(30)));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(
        Has(outcome.out, "30 contacts: 20 to add, 10 without a place on the handset.\nThe handset is full before"))
        << outcome.out;
}

TEST_F(Contacts, OneBadCardDoesNotStopTheRestUnlessStrict)
{
    Empty();
    const std::string file =
        File("mixed.vcf", Cards(2) + "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Nobody\r\nEND:VCARD\r\n" + Card("Last", "9"));
    const Outcome strict = Run("contacts import --strict " + file);
    EXPECT_EQ(strict.status, 1);
    EXPECT_TRUE(Stored().empty());
    const Outcome outcome = Run("contacts import " + file);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(Has(outcome.out, "mixed.vcf:11  Nobody\n    no-number: ")) << outcome.out;
    EXPECT_TRUE(Has(outcome.out, "4 contacts: 3 added, 1 that the handset cannot hold.\n3 of 4")) << outcome.out;
    EXPECT_EQ(Stored().size(), 3u);
}

TEST_F(Contacts, TellsWhenTheHandsetHoldsSomethingElse)
{
    // The group that every read reports.
    Handset().AddFault("patch=24,9@35");
    const Outcome outcome = Run("contacts put " + File("one.vcf", Card("New", "1")) + " 60");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(Has(outcome.out, "DIFFERENT")) << outcome.out;
    EXPECT_TRUE(Has(outcome.out, "    read back differs, Group: 0 -> 9\n")) << outcome.out;
    EXPECT_TRUE(Has(outcome.out, "It is not on the handset.\n")) << outcome.out;
}

TEST_F(Contacts, GoOnWhereAnInterruptedImportStopped)
{
    Empty();
    const std::string file = File("many.vcf", Cards(40));
    Handset().AddFault("delay=30@36");
    const pid_t process = m_program.Start({"contacts", "import", file});
    ASSERT_TRUE(Handset().WaitForRequests(kWrite, 3, 60s));
    kill(process, SIGINT);
    const Outcome stopped = m_program.Finish(process);
    EXPECT_EQ(stopped.status, 130) << stopped.err;
    const std::size_t written = Stored().size();
    EXPECT_LT(written, 40u);
    EXPECT_TRUE(Has(stopped.out, std::to_string(written) + " of 40 are on the handset.\nRun it again")) << stopped.out;
    Handset().ClearFaults();
    const Outcome rest = Run("contacts import " + file);
    EXPECT_EQ(rest.status, 0) << rest.out;
    EXPECT_TRUE(Has(rest.out, std::to_string(40 - written) + " added, " + std::to_string(written) + " there already"));
    EXPECT_EQ(Stored().size(), 40u);
}

TEST_F(Contacts, ARefusalFailsOneEntryALossEndsTheRest)
{
    const std::string file = File("four.vcf", Cards(4));
    const struct
    {
        const char* fault;
        const char* says;
    } cases[] = {
        {"result=9@36*1", "4 contacts: 3 added, 1 failed.\n"},
        {"result=4@36*1", "4 contacts: 1 failed, 3 not tried.\n0 of 4 are on the handset.\nThe handset is full"},
        {"unplug@36*1", " not tried.\n"}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.fault);
        Empty();
        Handset().AddFault(test.fault);
        const Outcome outcome = Run("contacts import " + file);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_TRUE(Has(outcome.out, test.says)) << outcome.out << outcome.err;
    }
}

TEST_F(Contacts, NothingIsDeletedUnaskedOrWithoutACopy)
{
    const std::string full = " --yes --copy /nonexistent/copy.vcf";
    for (const std::string& words : {std::string("clear"), std::string("delete 4 5"), "clear" + full,
                                     "delete 4 5" + full, std::string("delete 4 7 --yes --no-copy")}) {
        SCOPED_TRACE(words);
        EXPECT_NE(Run("contacts " + words).status, 0);
        EXPECT_EQ(Stored().size(), 44u);
    }
    EXPECT_EQ(Run("contacts delete 4 5 --yes --copy " + Path("copy.vcf")).status, 0);
    EXPECT_EQ(Stored().size(), 42u);
    EXPECT_TRUE(std::filesystem::exists(Path("copy.vcf")));
}

TEST_F(Contacts, OneThatCannotBeReadCostsOnlyItself)
{
    Handset().AddFault("result=9@35*1");
    const Outcome outcome = Run("contacts list");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(Has(outcome.out, "\n43 contacts\n")) << outcome.out;
    EXPECT_TRUE(Has(outcome.err, "contact 0 was not read: ")) << outcome.err;
    // Without all of them there is no whole copy.
    Handset().AddFault("result=9@35*1");
    EXPECT_EQ(Run("contacts clear --yes --copy " + Path("copy.vcf")).status, 1);
    EXPECT_EQ(Stored().size(), 44u);
}

} // namespace
} // namespace phnctl_test
