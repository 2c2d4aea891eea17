// Recurrence rules, from text to the record's fields and back.
#include "calendar/event_text.h"

#include <cstring>
#include <tuple>

namespace {

std::string Rule(const CAL_EVENT_INFO& record)
{
    return Line(Write(record), "RRULE");
}

TEST(RecurrenceText, IsMadeOfTheFieldsThatAreSet)
{
    CAL_EVENT_INFO record{};
    record.tmUntil = At(0, 1, 1);
    const auto expect = [&](const std::string& rule) {
        EXPECT_EQ(Rule(record), rule);
        record = {};
    };
    const auto typed = [&](uint32_t type, uint32_t count, uint32_t interval, uint16_t untilYear = 0) {
        record.dwRepeatType = type;
        record.dwRepeatCount = count;
        record.dwInterval = interval;
        record.tmUntil = At(untilYear, 12, 31);
    };
    expect("");
    typed(0, 5, 0, 2009);
    expect("");
    typed(0, 0, 1);
    expect("RRULE:INTERVAL=1");
    typed(1, 5, 2, 2009);
    expect("RRULE:FREQ=DAILY;COUNT=5;INTERVAL=2");
    typed(2, 0, 0, 2009);
    expect("RRULE:FREQ=WEEKLY;UNTIL=20091231T000000Z");
    typed(3, 0xFFFFFFFF, 0);
    expect("RRULE:FREQ=WEEKLY; BYDAY=MO,TU,WE,TH,FR;COUNT=-1");
    typed(5, 0, 0x80000000);
    expect("RRULE:FREQ=YEARLY;INTERVAL=-2147483648");
    typed(6, 0, 0);
    expect("RRULE:FREQ=N/A");

    typed(4, 0, 0);
    std::memcpy(record.byDay, "\2\xFE\0\0\0\0\xFF\3", 8); // the eighth is no day
    std::memcpy(record.byDayFromEnd, "\1\0\0\0\1\xFF\0\0", 8);
    expect("RRULE:FREQ=MONTHLY;BYDAY=2MO,-1MO,254TU,-1FR,SA,SU");
    record.byDay[0] = 1;
    expect("RRULE:BYDAY=1MO");
    record.dwByMonth = 0xFFFFF805;
    record.dwByMonthFromEnd = 1;
    expect("RRULE:BYMONTH=1,3,12");
    record.dwByMonthFromEnd = 1;
    expect("");
    typed(5, 0, 1);
    record.dwByMonth = 4;
    record.dwByMonthDay = record.dwByMonthDayFromEnd = 0xC0000001;
    expect("RRULE:FREQ=YEARLY;INTERVAL=1;BYMONTH=3;BYMONTHDAY=1,31,-1,-31");
}

// Of an event that starts on Tuesday, 10 March 2009: what the rule becomes, shown as it is written back.
TEST(RecurrenceFields, HoldWhatTheRuleStates)
{
    const std::tuple<std::string, const char*> cases[] = {
        {"FREQ=DAILY", "FREQ=DAILY;INTERVAL=1"},
        {"FREQ=DAILY;UNTIL=20091231T235958Z", "FREQ=DAILY;UNTIL=20091231T235958Z;INTERVAL=1"},
        {"FREQ=DAILY;UNTIL=20091231T000000Z;COUNT=5", "FREQ=DAILY;COUNT=5;INTERVAL=1"},
        {"FREQ=DAILY;UNTIL=20091231", "FREQ=DAILY;INTERVAL=1"},
        {"FREQ=DAILY;INTERVAL= +3x", "FREQ=DAILY;INTERVAL=3"},
        {"FREQ=DAILY;INTERVAL=99999999999", "FREQ=DAILY;INTERVAL=2147483647"},
        {" \tfreq=YEARLY;interval=2", "FREQ=YEARLY;INTERVAL=2"},
        {"FREQ=daily", "INTERVAL=1"},
        {"FREQ=HOURLY", "INTERVAL=1"},
        {"FREQ=DAILY;XCOUNT=1;COUNT=3", "FREQ=DAILY;INTERVAL=1"}, // the first place decides
        {"FREQ=DAILY;-COUNT=3=4", "FREQ=DAILY;COUNT=3;INTERVAL=1"},
        {"FREQ=WEEKLY; BYDAY=MO,TU,WE,TH,FR", "FREQ=WEEKLY;INTERVAL=1;BYDAY=MO,TU,WE,TH,FR"},
        {"FREQ=MONTHLY;BYDAY=2TU,-3WE,5MO", "FREQ=MONTHLY;INTERVAL=1;BYDAY=5MO,2TU,-3WE"},
        {"FREQ=WEEKLY;BYDAY=TU,0TH,XFRX,,ABC,fr", "FREQ=WEEKLY;INTERVAL=1;BYDAY=TU,TH,FR"},
        {"FREQ=MONTHLY;BYDAY=SUTU,258TU", "FREQ=MONTHLY;INTERVAL=1;BYDAY=2TU"}, // eight bits; the first day named
        {"FREQ=MONTHLY;BYDAY=2TU,3TU,TU", "FREQ=MONTHLY;INTERVAL=1;BYDAY=TU"},
        {"FREQ=YEARLY;BYMONTH=3,12,0,,x,99,259", "FREQ=YEARLY;INTERVAL=1;BYMONTH=3,12"},
        {"FREQ=YEARLY;BYMONTH=3;BYMONTHDAY=10,-22,-1,40", "FREQ=YEARLY;INTERVAL=1;BYMONTH=3;BYMONTHDAY=10,-1,-22"},
        {"FREQ=YEARLY;BYMONTHDAY=10;BYMONTH=4", "FREQ=YEARLY;INTERVAL=1;BYMONTHDAY=10"}, // the month is not found
        // Too long to be read: as if absent.
        {"FREQ=WEEKLY;BYDAY=WE,WE,WE,WE,WE,WE,WE,WE,WE,WE,WE,WE,WE,W", "FREQ=WEEKLY;INTERVAL=1"},
        {"FREQ=DAILY;COUNT=123456789012", "FREQ=DAILY;INTERVAL=1"},
        {"FREQ=DAILY;COUNT=00000000012", "FREQ=DAILY;COUNT=12;INTERVAL=1"},
        {"FREQ=DAILY;COUNT=5;X=" + std::string(238, 'x'), "FREQ=DAILY;COUNT=5;INTERVAL=1"}, // 259 characters
        {"FREQ=DAILY;COUNT=5;X=" + std::string(239, 'x'), "INTERVAL=1"},
    };
    for (const auto& [rule, written] : cases)
        EXPECT_EQ(Rule(Read(EventAt("RRULE:" + rule + "\r\n"))), "RRULE:" + std::string(written)) << rule;

    EXPECT_EQ(+Read(EventAt("RRULE:FREQ=WEEKLY;BYDAY=FR,TH,WE,TU,MO\n")).dwRepeatType, 2u);
    const CAL_EVENT_INFO fromEnd = Read(EventAt("RRULE:FREQ=YEARLY;BYMONTH=-10,-1\n"));
    EXPECT_EQ(+fromEnd.dwByMonth, 0u);
    EXPECT_EQ(+fromEnd.dwByMonthFromEnd, 0x201u);
}

TEST(RecurrenceFields, TheStartMustBeAnOccurrence)
{
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"FREQ=MONTHLY;BYDAY=2TU", "20090310", true},
        {"FREQ=MONTHLY;BYDAY=2TU", "20090317", false},
        {"FREQ=MONTHLY;BYDAY=2TU", "20090309", false},
        {"FREQ=MONTHLY;BYDAY=5SU", "20090329", true},
        {"FREQ=MONTHLY;BYDAY=-1FR", "20090327", true},
        {"FREQ=MONTHLY;BYDAY=-1FR", "20090320", false},
        {"FREQ=MONTHLY;BYDAY=-5TU", "20090303", true},
        {"FREQ=MONTHLY;BYDAY=-1SU", "20080224", true},  // a leap year's February
        {"FREQ=MONTHLY;BYDAY=-1TU", "20000222", false}, // so was 2000: the 29th is a Tuesday
        {"FREQ=WEEKLY;BYDAY=MO,TU", "20090310", true},
        {"FREQ=WEEKLY;BYDAY=x", "20090310", false},
        {"FREQ=WEEKLY; BYDAY=MO,TU,WE,TH,FR", "20090314", false},
        {"FREQ=YEARLY;BYMONTH=3;BYMONTHDAY=-1", "20090331", true},
        {"FREQ=YEARLY;BYMONTH=3;BYMONTHDAY=-1", "20090330", false},
        {"FREQ=YEARLY;BYMONTH=4;BYMONTHDAY=-1", "20090331", false},
        {"FREQ=YEARLY;BYMONTH=-12", "20090115", true},
        {"FREQ=YEARLY;BYMONTH=-1", "20090115", false},
        {"FREQ=YEARLY;BYMONTH=", "20090115", false},
        {"FREQ=MONTHLY;BYMONTHDAY=-29", "20080201", true},
        {"FREQ=MONTHLY;BYMONTHDAY=-29", "20090201", false},
        {"FREQ=MONTHLY;BYMONTHDAY=1", "20090201", true},
        {"FREQ=DAILY;UNTIL=19800101T000000Z", "20090310", false},
        {"FREQ=DAILY;UNTIL=20091301T000000Z", "20090310", false},
        {"BYDAY=TU", "20090310", false}, // no FREQ
        {"FREQ=ABCDEFGHIJK", "20090310", true},
        {"FREQ=ABCDEFGHIJKL", "20090310", false}, // too long to be read
    };
    for (const auto& [rule, day, isTaken] : cases) {
        CAL_EVENT_INFO record;
        EXPECT_EQ(Read(EventAt("RRULE:" + std::string(rule) + "\n", day), &record), isTaken) << rule << " " << day;
    }
    // The weekday is the stored start's: a Monday morning in New Zealand is still Sunday in UTC.
    CAL_EVENT_INFO record;
    const std::string early =
        "DESCRIPTION:d\nDTSTART;TZID=NZDT:20090316T080000\nDTEND:20090316T090000\nRRULE:FREQ=WEEKLY;";
    EXPECT_TRUE(Read(Event(early + "BYDAY=SU\n"), &record));
    EXPECT_FALSE(Read(Event(early + "BYDAY=MO\n"), &record));
}

} // namespace
