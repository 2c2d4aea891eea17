// Calendars of other programs, and what a handset can hold of them.
#include "phnctl/events/file.h"
#include "phnctl/events/words.h"

#include <array>
#include <gtest/gtest.h>

namespace {

using namespace phnctl;

const std::string kZone = "BEGIN:VTIMEZONE\nTZID:Custom\n"
                          "BEGIN:STANDARD\nDTSTART:19701025T030000\nRRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\n"
                          "TZOFFSETFROM:+0200\nTZOFFSETTO:+0100\nEND:STANDARD\n"
                          "BEGIN:DAYLIGHT\nDTSTART:19700329T020000\nRRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\n"
                          "TZOFFSETFROM:+0100\nTZOFFSETTO:+0200\nEND:DAYLIGHT\nEND:VTIMEZONE\n";

void SetLocalZone(const char* zone)
{
    setenv("TZ", zone, 1);
    tzset();
}

std::string Calendar(const std::string& components)
{
    return "BEGIN:VCALENDAR\nVERSION:2.0\nPRODID:-//Example//EN\n" + components + "END:VCALENDAR\n";
}

std::string Event(const std::string& lines, const std::string& uid = "1")
{
    return "BEGIN:VEVENT\nUID:" + uid + "\nDTSTAMP:20090101T000000Z\n" + lines + "END:VEVENT\n";
}

const std::string kTea = "SUMMARY:Tea\nDTSTART:20090310T120000\n";

// "PROPERTY=value" of each field, without the id; then "!code" of each note, and "cannot hold". "|" between candidates.
std::string Show(const std::string& file)
{
    std::string all;
    for (const Candidate& candidate : EventsOfFile("file", file)) {
        std::string text;
        for (const EntryField& field : candidate.entry.fields)
            if (field.property != "UID")
                text += field.property + '=' + field.value + ' ';
        for (const Note& note : candidate.notes)
            text += '!' + note.code + ' ';
        all += all.empty() ? "" : "|";
        all += candidate.fits ? text : "cannot hold " + text.substr(text.find('!'));
    }
    return all;
}

TEST(EventFile, AForeignEventBecomesWhatTheHandsetHolds)
{
    SetLocalZone("UTC0");
    const auto tea = [](const std::string& start) { return "SUMMARY:Tea\nDTSTART" + start + "\n"; };
    const auto in = [&](const std::string& zone) { return tea(";TZID=" + zone + ":20090310T120000"); };
    const auto at = [](const std::string& start, const std::string& end) {
        return "DESCRIPTION=Tea DTSTART=" + start + " DTEND=" + end + ' ';
    };
    const std::string noon = kTea + "DTEND:20090310T130000\n";
    const std::string held = at("20090310T120000", "20090310T130000");
    const std::string start = at("20090310T120000", "20090310T120000");
    const std::string inNewYork = at("20090310T160000", "20090310T160000") + "TZID=UTC ";
    const auto alarm = [&](const std::string& lines) { return noon + "BEGIN:VALARM\n" + lines + "\nEND:VALARM\n"; };
    const auto rule = [&](const std::string& text) { return noon + "RRULE:" + text + "\n"; };
    const std::pair<std::string, std::string> cases[] = {
        {"SUM\r\n MARY:Te\r\n a\r\nDTSTART:20090310T120000\r\nDURATION:PT1H\r\n", held}, // folded
        {"SUMMARY:a\\, b\\nc\nDTSTART:20090310T120000Z\nDURATION:PT30M\n",
         "DESCRIPTION=a, b c DTSTART=20090310T120000 DTEND=20090310T123000 TZID=UTC "},
        {"SUMMARY:C\\\xC3\xA9\nDTSTART:20090310T120000Z\n",
         "DESCRIPTION=C\\\xC3\xA9 DTSTART=20090310T120000 DTEND=20090310T120000 TZID=UTC "},
        {"DESCRIPTION:Tea\nDTSTART:20090310T120000\n", start},
        {noon + "DESCRIPTION:more\nLOCATION:here\nATTENDEE:mailto:a\n", held + "!dropped !dropped !dropped "},
        {"SUMMARY:" + std::string(81, 'x') + "\nDTSTART:20090310T120000\n",
         "DESCRIPTION=" + std::string(80, 'x') + " DTSTART=20090310T120000 DTEND=20090310T120000 !text-cut "},
        {"SUMMARY:\xE6\x97\xA5\nDTSTART:20090310T120000\n", "cannot hold !no-place-in-code-page "},
        {tea(";VALUE=DATE:20090228"), at("20090228T000000", "20090228T235900")},
        {tea(";VALUE=DATE:20090228\nDTEND;VALUE=DATE:20090302"), at("20090228T000000", "20090301T235900")},
        // Zones: UTC, and the clock's time for what repeats.
        {in("Custom"), at("20090310T110000", "20090310T110000") + "TZID=UTC "},
        {tea(";TZID=Custom:20090310T003000\nRRULE:FREQ=WEEKLY;BYDAY=TU"),
         at("20090309T233000", "20090309T233000") + "RRULE=FREQ=WEEKLY;INTERVAL=1;BYDAY=MO !zone-dropped "},
        {tea(";TZID=Nowhere:20090310T120000\nDURATION:PT1H"), held + "!unknown-zone "},
        // By the names of others.
        {in("America/New_York"), inNewYork},
        {in("Eastern Standard Time"), inNewYork},
        {in("\"(UTC-05:00) Eastern Time (US & Canada)\""), inNewYork},
        {in("(GMT-05.00) Eastern Time (US & Canada)"), inNewYork},
        {in("\"(UTC+01:00) Amsterdam, Berlin, Bern, Rome, Stockholm, Vienna\""),
         at("20090310T110000", "20090310T110000") + "TZID=UTC "},
        {in("/vendor/20230101/America/New_York"), inNewYork},
        {in("/America/Argentina/Ushuaia"), at("20090310T150000", "20090310T150000") + "TZID=UTC "},
        {in("../../../dev/null"), start + "!unknown-zone "},
        {in("zone.tab"), start + "!unknown-zone "},
        {alarm("ACTION:AUDIO\nTRIGGER:-PT15M"), held + "TRIGGER=15 "},
        {alarm("ACTION:AUDIO\nTRIGGER:-PT20M"), held + "TRIGGER=60 !alarm-moved "},
        {alarm("ACTION:NONE\nTRIGGER;VALUE=DATE-TIME:19760401T005545Z"), held},
        {rule("FREQ=YEARLY"), held + "RRULE=FREQ=YEARLY;INTERVAL=1 "},
        {rule("FREQ=MONTHLY;BYDAY=TU;BYSETPOS=2;UNTIL=20091231"),
         held + "RRULE=FREQ=MONTHLY;UNTIL=20091231T235959Z;INTERVAL=1;BYDAY=2TU "},
        {rule("FREQ=WEEKLY;BYDAY=TH,TU;COUNT=4;WKST=SU"), held + "RRULE=FREQ=WEEKLY;COUNT=4;INTERVAL=1;BYDAY=TU,TH "},
        {rule("FREQ=HOURLY"), "cannot hold !rule "},
        {rule("FREQ=MONTHLY;BYDAY=ZZ"), "cannot hold !rule "},
        // A start that its rule does not list is an event in front of the series.
        {kTea + "RRULE:FREQ=WEEKLY;COUNT=3;BYDAY=MO\n",
         start + "!start-not-in-rule |" + at("20090316T120000", "20090316T120000") +
             "RRULE=FREQ=WEEKLY;COUNT=2;INTERVAL=1;BYDAY=MO !start-not-in-rule "},
        {kTea + "RRULE:FREQ=WEEKLY;COUNT=1;BYDAY=MO\n", start + "!start-not-in-rule "},
        {kTea + "RRULE:FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30\n", start + "!start-not-in-rule "},
        // What is none.
        {"SUMMARY:Tea\n", "cannot hold !not-an-event "},
        {noon + "STATUS:CANCELLED\n", "cannot hold !cancelled "},
        {tea(":19801231T120000"), "cannot hold !date-out-of-range "},
        {tea(":19801229T120000\nRRULE:FREQ=DAILY;COUNT=10"),
         at("19810101T120000", "19810101T120000") + "RRULE=FREQ=DAILY;COUNT=7;INTERVAL=1 !start-moved "},
        {tea(":20090310T120000\nDTEND:20090310T110000"), "cannot hold !ends-before-it-starts "},
    };
    for (const auto& [lines, shown] : cases)
        EXPECT_EQ(Show(Calendar(kZone + Event(lines))), shown) << lines;
}

// "text line!code line" of each candidate and its notes, "-" behind one that is not meant.
std::string ShowLines(const std::string& file)
{
    std::string told;
    for (const Candidate& candidate : EventsOfFile("file", file)) {
        const std::string* const text = candidate.entry.Find("DESCRIPTION");
        told += (text ? *text : "?") + std::to_string(candidate.line) + (candidate.isMeant ? "" : "-");
        for (const Note& note : candidate.notes)
            told += '!' + note.code + std::to_string(note.line);
        told += ' ';
    }
    return told;
}

TEST(EventFile, TakesFilesAsTheyAre)
{
    SetLocalZone("UTC0");
    const std::string start = "DTSTART:20090310T120000\n";
    const std::string head = "BEGIN:VCALENDAR\nVERSION:2.0\nPRODID:x\n";
    const std::pair<std::string, std::string> cases[] = {
        {Calendar(Event("SUMMARY:Caf\xE9\n" + start) + Event("SUMMARY;CHARSET=ISO-8859-15:\xA4\n" + start)),
         "Caf\u00E94!charset-guessed7 \u20AC10 "},
        {head + Event("SUMMARY:Caf\xE9\n" + start), "Caf\u00E94!charset-guessed7 ?1!cut-off0 "},
        {head + Event(kTea) + "BEGIN:VEVENT\nSUMMARY:half\nDTST", "Tea4 half10!cut-off0 "},
        {head + "BEGIN:VEVENT\nSUMMARY:half\nBEGIN:VALARM\nno colon\nEND:VALARM\n" + Event(kTea) + Event(kTea, "2"),
         "Tea9 Tea15 half4!not-an-event0 ?1!cut-off0 "},
        {Calendar(Event(kTea + "GEO:here\nno colon\nnor here\nLOCATION:x\n")),
         "Tea4!not-a-property9!not-a-property11!dropped12 "},
        {Calendar(std::string(5000, 'x') + ":\n" + Event(kTea)), "Tea5 "},
        {Calendar(Event(kTea) + "BEGIN:VTODO\nSUMMARY:x\nEND:VTODO\n") + Calendar(Event(kTea)),
         "Tea4 x10-!not-an-event0 Tea17 "},
        {"", "?0!not-an-event0 "},
        {"x", "?0!not-an-event0 "},
        {"BEGIN:VCALENDAR\nVERSION:2.0\nBEGIN:VEVENT\n", "?3!not-an-event0 "},
        {Calendar(""), ""}, // an empty backup
    };
    for (const auto& [file, shown] : cases)
        EXPECT_EQ(ShowLines(file), shown) << file;
    std::string deep = head;
    for (int i = 0; i < 200000; ++i)
        deep += "BEGIN:VTODO\n";
    EXPECT_FALSE(EventsOfFile("file", deep).front().fits);
}

TEST(EventFile, TakesVCalendar)
{
    SetLocalZone("UTC0");
    const std::string at = "DTSTART=20090310T120000 DTEND=20090310T130000 ";
    const auto rule = [&](const std::string& text) { return "RRULE:" + text + "\n"; };
    const std::pair<std::string, std::string> cases[] = {
        {"SUMMARY;ENCODING=QUOTED-PRINTABLE;CHARSET=ISO-8859-1:Caf=E9=\n, b\n", "DESCRIPTION=Caf\u00E9, b " + at},
        {"DCREATED:20090101T000000Z\n", at + "CREATED=20090101T000000 "},
        {"AALARM;TYPE=WAVE:20090310T114500;;1;x\nDALARM:20090310T114500;;1;x\n", at + "TRIGGER=15 "},
        {"STATUS:NEEDS ACTION\nTRANSP:1\nCATEGORIES:MEETING\n", at + "!dropped "},
        {rule("D1 #10"), at + "RRULE=FREQ=DAILY;COUNT=10;INTERVAL=1 "},
        {rule("W1 TU WE 20091231T000000"), at + "RRULE=FREQ=WEEKLY;UNTIL=20091231T235959Z;INTERVAL=1;BYDAY=TU,WE "},
        {rule("MP1 2+ TU"), at + "RRULE=FREQ=MONTHLY;COUNT=2;INTERVAL=1;BYDAY=2TU "},
        {rule("MP2 1- MO TU 2+ TU #0"), at + "RRULE=FREQ=MONTHLY;INTERVAL=2;BYDAY=-1MO,2TU,-1TU "},
        {rule("MD1 10 LD #4"), at + "RRULE=FREQ=MONTHLY;COUNT=4;INTERVAL=1;BYMONTHDAY=10,-1 "},
        {rule("YM1 3 #0"), at + "RRULE=FREQ=YEARLY;INTERVAL=1;BYMONTH=3 "},
        {rule("YD1 69 #0"), "cannot hold !rule "},
        {rule("W2 MO$ TU #2"), "cannot hold !rule "},
        {rule("D1 #0") + "EXDATE:20090312T120000;20090311T120000\n",
         at + "!series-parted |DTSTART=20090313T120000 DTEND=20090313T130000 RRULE=FREQ=DAILY;INTERVAL=1 "
              "!series-parted "},
    };
    for (const auto& [lines, shown] : cases)
        EXPECT_EQ(Show("BEGIN:VCALENDAR\nVERSION:1.0\nBEGIN:VEVENT\n" + lines +
                       "DTSTART:20090310T120000\nDTEND:20090310T130000\nEND:VEVENT\nEND:VCALENDAR\n"),
                  shown)
            << lines;
    const auto zoned = EventsOfFile("file", "BEGIN:VCALENDAR\nVERSION:1.0\nTZ:-05\n"
                                            "DAYLIGHT:TRUE;-04;20090308T020000;20091101T020000;EST;EDT\n"
                                            "BEGIN:VEVENT\nDTSTART:20090310T120000\nEND:VEVENT\n"
                                            "BEGIN:VEVENT\nDTSTART:20091210T120000\nEND:VEVENT\nEND:VCALENDAR\n");
    ASSERT_EQ(zoned.size(), 2u);
    EXPECT_EQ(*zoned[0].entry.Find("DTSTART"), "20090310T160000");
    EXPECT_EQ(*zoned[1].entry.Find("DTSTART"), "20091210T170000");
}

TEST(EventFile, LongIdsBecomeShortOnesThatDiffer)
{
    const auto uidOf = [](const std::string& uid) {
        return *EventsOfFile("file", Calendar(Event(kTea, uid))).at(0).entry.Find("UID");
    };
    const std::string common(60, '0');
    EXPECT_EQ(uidOf(std::string(40, 'a')), std::string(40, 'a'));
    EXPECT_LE(uidOf(common + "1").size(), 40u);
    EXPECT_EQ(uidOf(common + "1"), uidOf(common + "1"));
    EXPECT_NE(uidOf(common + "1"), uidOf(common + "2"));
}

TEST(EventFile, TheLibrarysTextAndTheToolsFilesComeBackUnchanged)
{
    const char* const library[] = {
        "CREATED:20090105T080000Z\r\nLAST-MODIFIED:20090106T093000Z\r\nUID:{id, 1}\r\n"
        "DESCRIPTION:Caf\xE9, bar; b\\ar\r\nDTSTART;TZID=EST:20090310T100000\r\nDTEND;TZID=EST:20090310T120000\r\n"
        "RRULE:FREQ=MONTHLY;COUNT=5;INTERVAL=2;BYDAY=2TU\r\nBEGIN:VALARM\r\nTRIGGER:-P15M\r\n"
        "ACTION;X-PHN-RINGER-ID:4\r\nEND:VALARM\r\n\r\n",
        "CREATED:00000000T000000Z\r\nLAST-MODIFIED:00000000T000000Z\r\nUID:{}\r\nDESCRIPTION:\r\n"
        "DTSTART:20090302T091500Z\r\nDTEND:20090302T093000Z\r\nRRULE:FREQ=WEEKLY; BYDAY=MO,TU,WE,TH,FR\r\n\r\n",
    };
    for (const char* lines : library) {
        const StoredEntry stored{3, EventFromLibrary("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\n" +
                                                     std::string(lines) + "END:VEVENT\r\nEND:VCALENDAR\r\n")};
        EXPECT_EQ(EventFromLibrary(EventToLibrary(stored.entry)), stored.entry);
        const std::string file = FileOfEvents({&stored, 1});
        const auto back = EventsOfFile("file", file);
        ASSERT_EQ(back.size(), 1u);
        EXPECT_TRUE(back.front().notes.empty());
        EXPECT_EQ(back.front().entry, stored.entry) << file;
    }
}

// The library writes an event's texts as the handset has them.
TEST(EventFile, ALineEndInATextOfTheHandsetMakesNoOtherProperty)
{
    const StoredEntry stored{
        0, EventFromLibrary("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nCREATED:20090105T080000Z\r\n"
                            "LAST-MODIFIED:20090106T093000Z\r\nUID:{i\r\nDTSTART:20300101T000000Z}\r\n"
                            "DESCRIPTION:Tea\r\nDTSTART:20300101T000000\r\n RRULE:FREQ=DAILY\nEND:VEVENT\x1B\r\n"
                            "DTSTART:20090302T091500\r\nDTEND:20090302T093000\r\n\r\n\r\nEND:VEVENT\r\n"
                            "END:VCALENDAR\r\n")};
    EXPECT_EQ(*stored.entry.Find("DESCRIPTION"), "Tea\r\nDTSTART:20300101T000000\r\n RRULE:FREQ=DAILY\nEND:VEVENT\x1B");
    EXPECT_EQ(*stored.entry.Find("UID"), "i\r\nDTSTART:20300101T000000Z");
    EXPECT_FALSE(stored.entry.Find("RRULE"));
    const auto back = EventsOfFile("file", FileOfEvents({&stored, 1}));
    ASSERT_EQ(back.size(), 1u);
    EXPECT_EQ(*back.front().entry.Find("DESCRIPTION"), "Tea DTSTART:20300101T000000  RRULE:FREQ=DAILY END:VEVENT\\x1B");
    EXPECT_EQ(*back.front().entry.Find("DTSTART"), "20090302T091500");
    EXPECT_EQ(*back.front().entry.Find("UID"), "i DTSTART:20300101T000000Z");
}

TEST(EventFile, TheLastOccurrenceIsTheSameForOtherPrograms)
{
    SetLocalZone("EST5EDT,M3.2.0,M11.1.0");
    // Start, end and UNTIL as the library writes them, and UNTIL in a file.
    const std::array<std::string, 4> cases[] = {
        {":20091201T200000", ":20091201T210000", "20091204T010000Z", "20091203T200000;"},
        {":20091201T000000", ":20091201T235900", "20091204T045959Z", "20091203;"},
        {":20091201T200000Z", ":20091201T210000Z", "20091203T195959Z", "20091203T195959Z;"},
    };
    for (const auto& [start, end, until, inFile] : cases) {
        const StoredEntry stored{0, EventFromLibrary("BEGIN:VEVENT\r\nUID:{1}\r\nDESCRIPTION:Tea\r\nDTSTART" + start +
                                                     "\r\nDTEND" + end + "\r\nRRULE:FREQ=DAILY;UNTIL=" + until +
                                                     ";INTERVAL=1\r\nEND:VEVENT\r\n")};
        const std::string file = FileOfEvents({&stored, 1});
        EXPECT_NE(file.find("UNTIL=" + inFile), std::string::npos) << file;
        EXPECT_EQ(EventsOfFile("file", file).front().entry, stored.entry) << file;
    }
}

TEST(EventFile, ASeriesGoesOnWithoutItsExceptions)
{
    SetLocalZone("CET-1CEST,M3.5.0,M10.5.0/3");
    std::string starts;
    for (const Candidate& candidate :
         EventsOfFile("file", Calendar(kZone +
                                       Event("SUMMARY:Tea\nDTSTART;TZID=Custom:20090310T120000\nDURATION:PT1H\n"
                                             "RRULE:FREQ=WEEKLY;COUNT=6\nEXDATE:20090317T110000Z\n"
                                             "EXDATE;TZID=Custom:20090331T120000,20090330T120000\n") +
                                       Event("SUMMARY:Tea\nDTSTART;TZID=Custom:20090407T150000\nDURATION:PT1H\n"
                                             "RECURRENCE-ID:20090407T100000Z\n"))))
        if (candidate.isMeant)
            starts += *candidate.entry.Find("DTSTART") + ' ';
    EXPECT_EQ(starts, "20090310T120000 20090324T120000 20090414T120000 20090407T130000 "); // the last in UTC
}

TEST(EventRule, IsToldInWords)
{
    const std::pair<const char*, const char*> cases[] = {
        {"FREQ=DAILY;COUNT=1;INTERVAL=3", "every 3 days, once"},
        {"FREQ=WEEKLY; BYDAY=MO,TU,WE,TH,FR", "every weekday"},
        {"FREQ=MONTHLY;UNTIL=20091231T000000Z;BYDAY=2TU", "every second Tuesday of the month until 2009-12-31"},
        {"FREQ=YEARLY;BYMONTH=3,4;BYMONTHDAY=-1;COUNT=5", "every year in March and April on the last day, 5 times"},
    };
    for (const auto& [text, words] : cases)
        EXPECT_EQ(RuleInWords(ParseRule(text), "UTC"), words);
}

} // namespace
