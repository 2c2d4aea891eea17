// Why a text is rejected, or a record has none, line by line.
#include <cstdlib>
#include <tuple>

#include "calendar/event_text.h"
#include "log/log_capture.h"

namespace {

class Rejection : public testing::Test
{
protected:
    Rejection() { setenv("TZ", "UTC0", 1); }
    ~Rejection() override { unsetenv("TZ"); }

    LogCapture log_{0x2006};
};

TEST_F(Rejection, EachReasonHasItsOwnLine)
{
    const auto event = [](const std::string& start, const std::string& end, const std::string& rest = {}) {
        return Event("DESCRIPTION:d\nDTSTART:" + start + "\nDTEND:" + end + "\n" + rest);
    };
    const std::string day = "20090315T120000";
    const char* const decode = "DecodeData returned false.";
    const auto versioned = [](const std::string& version) {
        return "BEGIN:VCALENDAR\n" + version + EventAt("").substr(sizeof "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" - 1);
    };
    // Without a line: taken.
    const std::tuple<std::string, const char*> cases[] = {
        {"", "pszSource is NULL or nSrcLen is 0."},
        {"BEGIN:VCALENDAR", "GetiCalComponent returned false."},
        {"begin:vcalendar end:vcalendar", "GetiCalComponent returned false."},
        {versioned(""), decode},
        {versioned("VERSION:1.0\n"), decode},
        {versioned("X-VERSION:2.0\n"), decode},
        {versioned("VERSION:2.0\nVERSION:1.0\n"), nullptr},
        {"BEGIN:VCALENDAR\nVERSION:2.0\nBEGIN:VEVENT\nEND:VCALENDAR\n", decode},
        {"END:VCALENDAR\nBEGIN:VCALENDAR\n", "GetiCalComponent returned false."},
        {Event("DTSTART:" + day + "\nDTEND:" + day + "\n"), decode},
        {Event("DESCRIPTION:" + std::string(260, 'd') + "\nDTSTART:" + day + "\nDTEND:" + day + "\n"), decode},
        {Event("DESCRIPTION:d\nDTEND:" + day + "\n"), decode},
        {Event("DESCRIPTION:d\nDTSTART:" + day + "\n"), decode},
        {event("2009-03-15T12:00:00ZZ", day), decode}, // 21 characters
        {event(day, day, "RRULE:COUNT=5\n"), decode},
        {event(day, day, "BEGIN:VALARM\nTRIGGER:P5M\nEND:VALARM\n"), decode},
        {event(std::string(15, 'x') + '\0', day), decode}, // the text ends at a zero byte
        {event("20090315", day), "Start Date ParseiCalDate returned false."},
        {event("20090315t120000", day), "Start Date ParseiCalDate returned false."},
        {event("2009--0315T1200", day), "Start Date ParseiCalDate returned false."},
        {event("20090315-T120000", day), "Start Date ParseiCalDate returned false."},
        {event("abcdefghTijklmn", day), "Start Date CheckDateRange returned false."},
        {event("19801231T120000", day), "Start Date CheckDateRange returned false."},
        {event("20090015T120000", day), "Start Date CheckDateRange returned false."},
        {event("20091315T120000", day), "Start Date CheckDateRange returned false."},
        {event("20090300T120000", day), "Start Date CheckDateRange returned false."},
        {event("20090332T120000", day), "Start Date CheckDateRange returned false."},
        {event("20380119T031408", day), "ctStartDate tDate = -1(0xFFFFFFFF)."},
        {Event("DESCRIPTION:d\nDTSTART;TZID=YDT:20380118T191408\nDTEND:" + day + "\n"),
         "ctStartDate tDate = -2147483648(0x80000000)."},
        {event(day, "20090315"), "End Date ParseiCalDate returned false."},
        {event(day, "20091315T120000"), "End Date CheckDateRange returned false."},
        {event(day, "20380119T031408"), "ctEndDate tDate = -1(0xFFFFFFFF)."},
        {event(day, "20090315T110000"), "ctsDateDif.GetTotalMinutes() = -60(0xFFFFFFC4)."},
        {event(day, day, "BEGIN:VALARM\nTRIGGER:-P30M\nEND:VALARM\n"), "CheckTriggerRange returned false."},
        {event(day, day, "CREATED:19800101T000000\n"), "Creation Date CheckDateRange returned false."},
        {event(day, day, "LAST-MODIFIED:20090132T000000\n"), "Modified Date CheckDateRange returned false."},
        {event(day, day, "RRULE:FREQ=YEARLY;BYMONTH=4\n"), "ComposeNrvRule returned false."},
        // Of several reasons the first one is told.
        {event("1", "2", "RRULE:FREQ=YEARLY;BYMONTH=4\n"), "Start Date ParseiCalDate returned false."},
        {event(day, "2", "BEGIN:VALARM\nTRIGGER:-P30M\nEND:VALARM\nCREATED:19800101T000000\n"),
         "End Date ParseiCalDate returned false."},
        {event(day, day, "BEGIN:VALARM\nTRIGGER:-P5M\nEND:VALARM\nCREATED:19800101T000000\nRRULE:FREQ=A;BYMONTH=4\n"),
         "Creation Date CheckDateRange returned false."},
        {event(day, day), nullptr},
    };
    for (const auto& [text, line] : cases) {
        CAL_EVENT_INFO record;
        EXPECT_EQ(Read(text, &record), line == nullptr) << text;
        EXPECT_EQ(log_.TakeLines(), line ? Lines{"CCalendar Error iCalendarToNorvik - " + std::string(line)} : Lines{})
            << text;
    }
    CAL_EVENT_INFO record{};
    ICAL_PROPERTIES properties;
    EXPECT_FALSE(CCalendarEx().iCalendarToNorvik(&record, &properties, nullptr, 5));
    EXPECT_EQ(log_.TakeLines(), Lines{"CCalendar Error iCalendarToNorvik - pszSource is NULL or nSrcLen is 0."});
}

TEST_F(Rejection, ARecordHasNoTextForTwoReasons)
{
    const auto expect = [](uint32_t zone, uint16_t alarm) {
        CAL_EVENT_INFO record{};
        record.dwTimeZoneID = zone;
        record.wAlarm = alarm;
        EXPECT_EQ(Write(record), "");
    };
    expect(14, 0);
    expect(0xFFFFFFFF, 0);
    expect(13, 1);
    const std::string zone = "CCalendar Error NorvikToiCalendar - prcEventInfo->dwTimeZoneID(";
    const std::string limit = ") is greater or equal than TIME_ZONE_SIZE(14, 0xE).";
    EXPECT_EQ(log_.TakeLines(), (Lines{zone + "14, 0xE" + limit, zone + "-1, 0xFFFFFFFF" + limit,
                                       "CCalendar Error NorvikToiCalendar - SetiCALAlarmProp returned false"}));
}

} // namespace
