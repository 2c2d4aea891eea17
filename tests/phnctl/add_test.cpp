// Contacts and events that are typed on the command line: they are what was meant, or nothing is written.
#include "phnctl/handset_run.h"

namespace {

constexpr std::uint32_t kSetContact = 36;
constexpr std::uint32_t kSetEvent = 31;

class Add : public HandsetRun
{
protected:
    Add()
    {
        m_program.Set("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
        m_program.Set("XDG_STATE_HOME", Path("state"));
    }
};

TEST_F(Add, AContactShowsWhereEachNumberIsAndIsTakenBack)
{
    const std::size_t before = Held().contacts.size();
    Expect(0, "contacts add \"Ann Lee\" --work 5550100 \"+47 555 01 42\" 5550199 --dry-run", {"Mobile  +475550142\n"});
    EXPECT_EQ(Handset().Requests(kSetContact), 0u);
    Expect(0, "contacts add \"anna  BERG\" 5551000685 --dry-run",
           {"namesake: the handset has a contact of this name already, at index 0; ",
            "shared-number: another contact of the handset has a number or an address of these: Łukasz Wójcik, at "});
    Expect(0, "contacts add \"Ann Lee\" --work 5550100 \"+47 555 01 42\" 5550199",
           {"Name    Ann Lee\nMobile  +475550142\nHome    5550199\nWork    5550100\n"});
    EXPECT_EQ(Held().contacts.size(), before + 1);
    Expect(2, "undo --yes 1999", {"there is no run 1999"});
    Expect(0, "undo --yes 20", {"contacts.vcf\ndeleted      Ann Lee  (index "}); // the only run that begins so
    EXPECT_EQ(Held().contacts.size(), before);
    Expect(2, "undo --yes 20", {"several runs begin with 20; "});
    Expect(2, "contacts add Ann 1-800-FLOWERS",
           {"NUMBER: '1-800-FLOWERS' is no number that can be dialled. Nothing was changed.\n"});
    Expect(2, "contacts add Ann 1 2 3 4 5", {"NUMBER: '5': the handset has no place for another one."});
    Expect(2, "contacts add Ann", {"keeps no contact without a number or an address"});
    EXPECT_EQ(Held().contacts.size(), before);
}

TEST_F(Add, AnEventIsShownInFullOrRefused)
{
    const RunRow cases[] = {
        {"Choir 2037-03-12 19:30 2h --alarm 15", 0,
         "Start  Thu 2037-03-12 19:30\nEnd    Thu 2037-03-12 21:30\nAlarm  15 minutes before\n"},
        {"Choir 2037-03-12 9:05 1h30 --repeat \"weekly mon,thu x10\"", 0,
         "End      Thu 2037-03-12 10:35\nRepeats  every week on Monday and Thursday, 10 times\n"},
        {"Bill 2037-03-31 12:00 --repeat \"monthly until 2037-06-30\"", 0, "every month until 2037-06-30\n"},
        {"Fair 2037-03-30 2d", 0, "Start  Mon 2037-03-30, all day\nEnd    Tue 2037-03-31, all day\n"},
        {"Fair 2037-03-30 all day", 0, "End    Mon 2037-03-30, all day\n"},
        {"Tea tomorrow 9:00 45m", 0, " 09:45\n"},
        {"Tea 2009-03-15 12:00", 2, "phnctl: Sun 2009-03-15 12:00 is over; "},
        {"Tea tomorrow 9", 2, "'tomorrow 9' is no time of an event; allowed: a day"},
        {"Tea tomorrow 24:00", 2, "is no time of an event"},
        {"Tea 2037-02-29", 2, "is no time of an event"},
        {"Tea 2037-03-12 3h", 2, "is no time of an event"},
        {"Tea 2037-03-12 9:00 --repeat \"weekly mon\"", 2, "the start is none of the days that the rule lists"},
        {"Tea 2037-03-12 9:00 --repeat \"daily until 2037-03-11\"", 2, "--repeat 'daily until 2037-03-11': allowed"},
        {"Tea 2037-03-12 9:00 --repeat \"weekly noday\"", 2, "allowed are daily"},
        {"Tea 2037-03-12 9:00 --alarm 20", 2, "the handset has alarms 0, 5, 10, "},
        {"Tea 2038-03-12", 2, "keeps dates from 1981 to 2037"},
    };
    std::size_t held = Held().events.size();
    for (const auto& [words, status, says] : cases) {
        Expect(status, "events add " + words, {says});
        held += status == 0;
        EXPECT_EQ(Held().events.size(), held) << words;
    }
    EXPECT_EQ(Handset().Requests(kSetEvent), 6u);
    Expect(0, "undo --yes");
    EXPECT_EQ(Held().events.size(), held - 1);
}

} // namespace
