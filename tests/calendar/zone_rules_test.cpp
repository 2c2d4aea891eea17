// What is stored of local times around changes of the clocks, and up to 2038, in the zone of the process's TZ.
#include <cstdlib>
#include <tuple>

#include "calendar/event_text.h"
#include "calendar/local_time.h"
#include "phn_platform_test.h"

namespace {

constexpr const char* kBerlin = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr const char* kNewYork = "EST5EDT,M3.2.0,M11.1.0";
constexpr const char* kKolkata = "IST-5:30";
constexpr const char* kSydney = "AEST-10AEDT,M10.1.0,M4.1.0/3";

class Zones : public testing::Test
{
protected:
    ~Zones() override { unsetenv("TZ"); }
};

TEST_F(Zones, StartsAndAlarmsFollowTheClocks)
{
    // The start is from behind DTSTART.
    using Text = const char*;
    const std::tuple<Text, std::string, std::string, Text, Text> cases[] = {
        {"UTC0", ":20090329T023000", "60", "2009-03-29 02:30:00", "2009-03-29 01:30:00"},
        {kKolkata, ":20090329T023000", "2880", "2009-03-29 02:30:00", "2009-03-27 02:30:00"},
        // An hour before 03:30 is 01:30 when the clocks go forward; a day before is an hour earlier or later.
        {kBerlin, ":20090329T033000", "60", "2009-03-29 03:30:00", "2009-03-29 01:30:00"},
        {kBerlin, ":20090329T120000", "1440", "2009-03-29 12:00:00", "2009-03-28 11:00:00"},
        {kBerlin, ":20091025T120000", "1440", "2009-10-25 12:00:00", "2009-10-24 13:00:00"},
        {kNewYork, ":20091101T120000", "2880", "2009-11-01 12:00:00", "2009-10-30 13:00:00"},
        {kSydney, ":20091004T120000", "1440", "2009-10-04 12:00:00", "2009-10-03 11:00:00"},
        // A time that the clocks leave out is the one an hour before it, one that they pass twice itself.
        {kBerlin, ":20090329T023000", "0", "2009-03-29 01:30:00", "2009-03-29 01:30:00"},
        {kBerlin, ":20091025T023000", "0", "2009-10-25 02:30:00", "2009-10-25 02:30:00"},
        // The table's offset runs over the system's change.
        {kBerlin, ";TZID=IDLW:20090328T150000", "0", "2009-03-29 04:00:00", "2009-03-29 04:00:00"},
        {kBerlin, ";TZID=NZST:20091025T120000", "0", "2009-10-25 01:00:00", "2009-10-25 01:00:00"},
    };
    for (const auto& [zone, start, trigger, stored, alarm] : cases) {
        setenv("TZ", zone, 1);
        const CAL_EVENT_INFO record =
            Read(Event("DESCRIPTION:d\nDTSTART" + start + "\nDTEND:20100601T000000\nBEGIN:VALARM\nTRIGGER:-P" +
                       trigger + "M\nEND:VALARM\n"));
        EXPECT_EQ(Show(record.tmStart), stored) << zone << start;
        EXPECT_EQ(Show(record.tmAlarm), alarm) << zone << start;
        EXPECT_EQ(Line(Write(record), "TRIGGER"), "TRIGGER:-P" + trigger + "M") << zone << start;
    }
}

// Is an event from this to that time taken? The texts are from behind the property's name.
bool IsTaken(const std::string& start, const std::string& end)
{
    CAL_EVENT_INFO record;
    return Read(Event("DESCRIPTION:d\nDTSTART" + start + "\nDTEND" + end + "\n"), &record);
}

TEST_F(Zones, TheDurationIsElapsedTime)
{
    setenv("TZ", kBerlin, 1);
    EXPECT_TRUE(IsTaken(":20090315T120000", ":20090315T120000"));
    EXPECT_TRUE(IsTaken(":20090315T120000", ":20090315T115901")); // less than a minute counts as none
    EXPECT_FALSE(IsTaken(":20090315T120000", ":20090315T115900"));
    EXPECT_TRUE(IsTaken(":20090329T013000", ":20090329T023000")); // which the clocks leave out
    EXPECT_FALSE(IsTaken(":20090329T013000", ":20090329T022900"));
}

TEST_F(Zones, TimesEndWithTheirThirtyTwoBits)
{
    // The last time that fits, and the first that does not.
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"UTC0", "20380119T031407", "20380119T031408"},
        {kBerlin, "20380119T041407", "20380119T041408"},
        {kNewYork, "20380118T221407", "20380118T221408"},
    };
    for (const auto& [zone, last, first] : cases) {
        setenv("TZ", zone, 1);
        EXPECT_TRUE(IsTaken(":" + last, ":" + last)) << zone;
        EXPECT_FALSE(IsTaken(":20370101T000000", ":" + first)) << zone;
        EXPECT_FALSE(IsTaken(":" + first, ":" + first)) << zone;
        EXPECT_FALSE(IsTaken(":99991231T999999", ":99991231T999999"));
        EXPECT_FALSE(IsTaken(";TZID=YDT:" + last, ":" + last)) << "eight hours later, in UTC";
        EXPECT_TRUE(IsTaken(";TZID=JST:" + last, ":" + last));
        EXPECT_TRUE(IsTaken(":19810101T000000", ":19810101T000000"));
        EXPECT_FALSE(IsTaken(":19801231T235959", ":19810101T000000"));
    }
}

TEST_F(Zones, WithoutTheSystemsRulesThereIsNoTime)
{
    platform_test::FailCall("TzSpecificLocalTimeToSystemTime", ERROR_NOT_SUPPORTED);
    EXPECT_EQ(LocalToSeconds(At(2009, 3, 15)), -1);
    platform_test::FailCall("SystemTimeToTzSpecificLocalTime", ERROR_NOT_SUPPORTED);
    DEV_DATE_TIME local{};
    EXPECT_FALSE(SecondsToLocal(1, &local));
}

} // namespace
