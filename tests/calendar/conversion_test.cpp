// Both directions of the iCalendar conversion.
#include "calendar/event_text.h"
#include "calendar/time_zones.h"

#include <cstring>
#include <sstream>
#include <tuple>

namespace {

CAL_EVENT_INFO Record()
{
    CAL_EVENT_INFO record{};
    record.tmStart = At(2009, 3, 15, 12);
    record.tmEnd = At(2009, 3, 15, 13, 30, 15);
    record.tmCreated = At(2009, 1, 5, 8);
    record.tmModified = At(2009, 1, 6, 9, 30);
    record.szDescription.SetWide(u"Tea");
    record.szUID.SetWide(u"42");
    return record;
}

TEST(EventText, HasTheLinesThatHostsParse)
{
    CAL_EVENT_INFO record = Record();
    EXPECT_EQ(Write(record),
              "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nCREATED:20090105T080000Z\r\n"
              "LAST-MODIFIED:20090106T093000Z\r\nUID:{42}\r\nDESCRIPTION:Tea\r\n"
              "DTSTART:20090315T120000\r\nDTEND:20090315T133015\r\n\r\n\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");

    record = Record();
    record.tmCreated = {};
    record.tmModified = At(65535, 255, 255, 255, 255, 65535);
    record.tmStart = At(1980, 0, 0);
    record.szDescription.SetWide(std::u16string(80, u'\u00E9')); // fills its field
    record.szUID.SetWide(u"");
    const std::string text = Write(record);
    EXPECT_EQ(Line(text, "CREATED"), "CREATED:00000000T000000Z");
    EXPECT_EQ(Line(text, "LAST-MODIFIED"), "LAST-MODIFIED:65535255255T25525565535Z");
    EXPECT_EQ(Line(text, "DTSTART"), "DTSTART:19800000T000000");
    EXPECT_EQ(Line(text, "DESCRIPTION"), "DESCRIPTION:" + std::string(80, '\xE9')); // code page 1252
    EXPECT_EQ(Line(text, "UID"), "UID:{}");
}

TEST(EventText, ZonesAreNamedByTheirNumbers)
{
    constexpr const char* kNames[] = {"",    "",    "EST", "EDT",  "CST",  "CDT",  "MST",
                                      "MDT", "PST", "PDT", "AKST", "AKDT", "HAST", "HADT"};
    CAL_EVENT_INFO record = Record();
    for (uint32_t zone = 0; zone < 14; ++zone) {
        record.dwTimeZoneID = zone;
        const std::string name = kNames[zone];
        const std::string prefix = name.empty() ? ":" : ";TZID=" + name + ":";
        const std::string text = Write(record);
        EXPECT_EQ(Line(text, "DTSTART"), "DTSTART" + prefix + "20090315T120000" + (zone == 1 ? "Z" : ""));
        EXPECT_EQ(Line(text, "DTEND"), "DTEND" + prefix + "20090315T133015" + (zone == 1 ? "Z" : ""));
        EXPECT_EQ(Read(text).dwTimeZoneID, zone);
    }
    record.dwTimeZoneID = 14;
    EXPECT_EQ(Write(record), "");
}

TEST(EventText, AnAlarmsLeadIsWholeMinutesBeforeTheStart)
{
    // Without a trigger the event has no text.
    const std::tuple<DEV_DATE_TIME, const char*> cases[] = {
        {At(2009, 3, 15, 12), "TRIGGER:-P0M"},
        {At(2009, 3, 15, 11, 44, 1), "TRIGGER:-P15M"},
        {At(2009, 3, 15, 12, 0, 59), "TRIGGER:-P0M"},
        {At(2009, 3, 15, 12, 1), ""},
        {At(2009, 2, 29), ""},
        {At(2009, 13, 1), ""},
        {At(2009, 3, 15, 24), ""},
        {At(2009, 3, 15, 0, 0, 60), ""},
        {At(1969, 12, 1), ""},
    };
    CAL_EVENT_INFO record = Record();
    record.wAlarm = 1;
    for (const auto& [alarm, trigger] : cases) {
        record.tmAlarm = alarm;
        EXPECT_EQ(Line(Write(record), "TRIGGER"), trigger) << Show(alarm);
        EXPECT_EQ(Write(record).empty(), !*trigger);
    }
    record.tmAlarm = At(2009, 3, 15, 11);
    record.dwRingerID = 0xFFFFFFFF;
    EXPECT_EQ(Line(Write(record), "ACTION"), "ACTION;X-PHN-RINGER-ID:-1");
    record.tmStart = At(2009, 0, 15, 12);
    EXPECT_EQ(Write(record), "");
}

TEST(EventRecord, HoldsWhatTheTextStates)
{
    const CAL_EVENT_INFO record =
        Read("x BEGIN:VCALENDAR\nversion:2.0\nBEGIN:VEVENT\n uid:a{4}2}b\n\tDescription;X=1:Caf\xE9, Bar \n"
             "CREATED:2009-01-05T08:00:00Z\nLAST-MODIFIED:20090106T093000\nDTSTART:20090315T120000Z\n"
             "DTEND:2009/03/15T13-30-15\nBEGIN:VALARM\nTRIGGER;RELATED=START:-P15M\n"
             "ACTION;X-PHN-RINGER-ID:4\nEND:VALARM\nEND:VEVENT\nBEGIN:VEVENT\nUID:2\nEND:VEVENT\nEND:VCALENDAR");
    CAL_EVENT_INFO expected = Record();
    expected.tmAlarm = At(2009, 3, 15, 11, 45);
    expected.dwTimeZoneID = expected.dwInterval = expected.wValid = expected.wAlarm = 1;
    expected.dwRingerID = 4;
    expected.szUID.SetWide(u"4}2");
    expected.szDescription.SetWide(u"Caf\u00E9, Bar ");
    EXPECT_EQ(std::memcmp(&record, &expected, sizeof record), 0) << testing::PrintToString(record);

    const CAL_EVENT_INFO bare = Read(EventAt("CREATED:yesterday\nLAST-MODIFIED:20090106\nX:{1}\n"));
    EXPECT_EQ(Show(bare.tmCreated), "0000-00-00 00:00:00");
    EXPECT_EQ(Show(bare.tmModified), "0000-00-00 00:00:00");
    EXPECT_EQ(+bare.dwRingerID, 255u);
    EXPECT_EQ(+bare.wAlarm, 0);
    EXPECT_EQ(bare.szUID.GetWide(), u"");
    for (const std::string uid : {"{4", "4}", "}4{"}) // braces that do not enclose it belong to it
        EXPECT_EQ(Read(EventAt("UID:" + uid + "\n")).szUID.GetText(), uid);
}

TEST(EventRecord, TextsAreCutWhereTheirFieldsEnd)
{
    const CAL_EVENT_INFO record =
        Read(Event("DESCRIPTION:" + std::string(259, 'd') + "\nUID:{" + std::string(257, 'u') +
                   "}\nDTSTART:20090315T120000\nDTEND:20090315T120000\n"));
    EXPECT_EQ(record.szDescription.GetWide(), std::u16string(80, u'd'));
    EXPECT_EQ(record.szUID.GetWide(), std::u16string(40, u'u'));
    EXPECT_EQ(+record.dwInterval, 1u);
    EXPECT_EQ(Read(EventAt("UID:" + std::string(260, 'u') + "\n")).szUID.GetWide(), u"") << "too long: as if absent";
}

// The start's and the end's text from behind the property's name, the zone, and what is stored of both.
TEST(EventRecord, ZonesOfTheOffsetTableBecomeUtc)
{
    const std::tuple<std::string, std::string, uint32_t, std::string> cases[] = {
        {":20090315T120000Z", ":20090315T130000", 1, "2009-03-15 12:00:00 2009-03-15 13:00:00"},
        {":20090315T120000", ":20090315T130000z", 0, "2009-03-15 12:00:00 2009-03-15 13:00:00"},
        {";TZID=CET:20090315T120000", ":20090315T130000", 1, "2009-03-15 11:00:00 2009-03-15 12:00:00"},
        {";TZID=PST:20090315T120000Z", ":20090315T130000", 8, "2009-03-15 12:00:00 2009-03-15 13:00:00"},
        {";TZID=lcat:20090315T120000Z", ":20090315T130000", 0, "2009-03-15 12:00:00 2009-03-15 13:00:00"},
        {";TZID=gmt:20090315T120000", ":20090315T130000", 1, "2009-03-15 12:00:00 2009-03-15 13:00:00"},
        // The end's zone is the one that counts, for both; a name of more than nine characters is none.
        {";TZID=CET:20090315T120000", ";TZID=acst:20090315T130000", 1, "2009-03-15 02:30:00 2009-03-15 03:30:00"},
        {":20090315T120000", ";TZID=NDT:20090315T130000", 1, "2009-03-15 14:30:00 2009-03-15 15:30:00"},
        {";TZID=Europe/Oslo:20090315T120000Z", ":20090315T130000", 1, "2009-03-15 12:00:00 2009-03-15 13:00:00"},
        {";VALUE=A;TZID=PST:20090315T120000", ":20090315T130000", 0, "2009-03-15 12:00:00 2009-03-15 13:00:00"},
        // Across midnight, ends of months and of years.
        {";TZID=NZDT:20080301T000000", ":20080301T130000", 1, "2008-02-29 11:00:00 2008-03-01 00:00:00"},
        {";TZID=IDLW:20091231T120000", ":20091231T235959", 1, "2010-01-01 00:00:00 2010-01-01 11:59:59"},
    };
    for (const auto& [start, end, zone, stored] : cases) {
        const CAL_EVENT_INFO record = Read(Event("DESCRIPTION:d\nDTSTART" + start + "\nDTEND" + end + "\n"));
        EXPECT_EQ(+record.dwTimeZoneID, zone) << start << end;
        EXPECT_EQ(Show(record.tmStart) + " " + Show(record.tmEnd), stored) << start << end;
    }
}

// A name, and what is added to its time for UTC, in minutes.
TEST(EventRecord, EveryNameOfTheOffsetTableIsKnown)
{
    std::istringstream table(
        "ACDT -630 ACST -570 AEDT -660 AEST -600 AT 120 AWDT -540 AWST -480 BAT -180 BDST -120 BET 660 BST "
        "-60 BT -180 BZT2 180 CADT -630 CAST -570 CAT 600 CCT -480 CED -120 CET -60 EAST -600 EED -180 EET "
        "-120 EEST -180 FST -120 FWT -60 GST -600 IDLE -720 IDLW 720 IST -330 IT -210 JST -540 JT -420 KST "
        "-540 MED -120 MET -60 MEST -120 MEWT -60 MT -480 NDT 150 NFT 210 NT 660 NST -390 NZ -660 NZST -720 "
        "NZDT -780 NZT -720 ROK -540 SAD -600 SAST -540 SAT -540 SDT -600 SST -120 SWT -60 USZ3 -240 USZ4 "
        "-300 USZ5 -360 USZ6 -420 UZ10 -660 WAT 60 WET 0 WST -480 YDT 480 YST 540 ZP4 -240 ZP5 -300 ZP6 -360 ");
    std::string name;
    for (int minutes = 0; table >> name >> minutes;)
        EXPECT_EQ(FindTimeZoneOffset(name), 60 * minutes) << name;
}

TEST(EventRecord, DatesHaveOneShapeAndRunOverWhenTheyDoNotExist)
{
    const auto stored = [](const std::string& text) {
        return Show(Read(Event("DESCRIPTION:d\nDTSTART:" + text + "\nDTEND:20100601T000000\n")).tmStart);
    };
    EXPECT_EQ(stored("2009:03\\15T12:00:59"), "2009-03-15 12:00:59"); // separators of any sort, one at a place
    EXPECT_EQ(stored("2009-03-15T12:3"), "2009-03-15 12:03:00");      // what is missing is 0
    EXPECT_EQ(stored("20090315T12/000 rest"), "2009-03-15 12:00:00"); // no separator of times
    EXPECT_EQ(stored("20080230T120000"), "2008-03-01 12:00:00");
    EXPECT_EQ(stored("20090331T250000"), "2009-04-01 01:00:00");
    EXPECT_EQ(stored("20091231T235999"), "2010-01-01 00:00:39");
    EXPECT_EQ(stored("20090315T-10000"), "2009-03-14 23:00:00");
}

TEST(EventRecord, OnlyTheHandsetsTriggersAreTaken)
{
    const auto alarm = [](const std::string& trigger) {
        return EventAt("BEGIN:VALARM\nTRIGGER:" + trigger + "\nACTION:DISPLAY\nEND:VALARM\n");
    };
    std::istringstream taken("-P0M 12:00 -P5M 11:55 -P10M 11:50 -P15M 11:45 -P60M 11:00 -P120M 10:00 -P015M 11:45 "
                             "-PT15M 12:00 -P000015M 11:45");
    for (std::string trigger, stored; taken >> trigger >> stored;) {
        const CAL_EVENT_INFO record = Read(alarm(trigger));
        EXPECT_EQ(Show(record.tmAlarm), "2009-03-10 " + stored + ":00") << trigger;
        EXPECT_EQ(+record.wAlarm, 1);
        EXPECT_EQ(+record.dwRingerID, 255u);
    }
    EXPECT_EQ(Show(Read(alarm("-P1440M")).tmAlarm), "2009-03-09 12:00:00");
    EXPECT_EQ(Show(Read(alarm("-P2880M")).tmAlarm), "2009-03-08 12:00:00");
    for (const char* trigger : {"-P30M", "-P-5M", "-P1441M", "P15M", "-P15S", "-P0000015M"}) { // ten characters
        CAL_EVENT_INFO record;
        EXPECT_FALSE(Read(alarm(trigger), &record)) << trigger;
    }
    CAL_EVENT_INFO record;
    EXPECT_FALSE(Read(EventAt("BEGIN:VALARM\nACTION;X-PHN-RINGER-ID:1\nEND:VALARM\n"), &record)) << "no trigger";
    EXPECT_EQ(+Read(EventAt("BEGIN:VALARM\nTRIGGER:-P99M\n")).wAlarm, 0) << "no whole alarm";
    EXPECT_EQ(+Read(EventAt("BEGIN:VALARM\nTRIGGER:-P5M\nACTION;X-PHN-RINGER-ID:1234567890\nEND:VALARM\n")).dwRingerID,
              255u);
}

} // namespace
