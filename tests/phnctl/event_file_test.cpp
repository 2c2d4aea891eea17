// Calendars of other programs, and what a handset can hold of them.
#include "phnctl/events/file.h"
#include "phnctl/events/words.h"

#include <gtest/gtest.h>
#include <libical/ical.h>
#include <memory>
#include <set>

namespace phnctl {
namespace {

constexpr const char* kZone = "BEGIN:VTIMEZONE\r\nTZID:Custom\r\nBEGIN:STANDARD\r\nDTSTART:19701025T030000\r\n"
                              "RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\r\nTZOFFSETFROM:+0200\r\nTZOFFSETTO:+0100\r\n"
                              "END:STANDARD\r\nBEGIN:DAYLIGHT\r\nDTSTART:19700329T020000\r\n"
                              "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\r\nTZOFFSETFROM:+0100\r\nTZOFFSETTO:+0200\r\n"
                              "END:DAYLIGHT\r\nEND:VTIMEZONE\r\n"
                              "BEGIN:VTIMEZONE\r\nTZID:Fixed\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\n"
                              "TZOFFSETFROM:-0700\r\nTZOFFSETTO:-0700\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";

void SetLocalZone(const char* zone)
{
    setenv("TZ", zone, 1);
    tzset();
}

std::string Calendar(const std::string& components)
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Example//Calendar//EN\r\n" + components + "END:VCALENDAR\r\n";
}

std::string Event(const std::string& lines)
{
    return "BEGIN:VEVENT\r\nUID:1\r\nDTSTAMP:20090101T000000Z\r\n" + lines + "END:VEVENT\r\n";
}

// "PROPERTY=value" of each field, without the id; then "!code" of each note, and "cannot hold".
std::string Show(const Candidate& candidate)
{
    std::string text;
    for (const EntryField& field : candidate.entry.fields)
        if (field.property != "UID")
            text += field.property + '=' + field.value + ' ';
    for (const Note& note : candidate.notes)
        text += '!' + note.code + ' ';
    return candidate.fits ? text : "cannot hold " + text.substr(text.find('!'));
}

TEST(EventFile, AForeignEventBecomesWhatTheHandsetHolds)
{
    SetLocalZone("UTC0");
    const auto tea = [](const std::string& start) { return "SUMMARY:Tea\r\nDTSTART" + start + "\r\n"; };
    const auto at = [](const std::string& start, const std::string& end) {
        return "DESCRIPTION=Tea DTSTART=" + start + " DTEND=" + end + ' ';
    };
    const std::string noon = tea(":20090310T120000\r\nDTEND:20090310T130000");
    const std::string held = at("20090310T120000", "20090310T130000");
    const auto alarm = [&](const std::string& trigger) {
        return noon + "BEGIN:VALARM\r\nACTION:AUDIO\r\n" + trigger + "\r\nEND:VALARM\r\n";
    };
    const auto rule = [&](const std::string& text) { return noon + "RRULE:" + text + "\r\n"; };
    const struct
    {
        std::string lines, shown;
    } cases[] = {
        {"SUM\r\n MARY:Te\r\n a\r\nDTSTART:20090310T120000\r\nDURATION:PT1H\r\n", held}, // folded
        {"SUMMARY:a\\, b\\nc\r\nDTSTART:20090310T120000Z\r\nDURATION:PT30M\r\n",
         "DESCRIPTION=a, b c DTSTART=20090310T120000 DTEND=20090310T123000 TZID=UTC "},
        {"DESCRIPTION:Tea\r\nDTSTART:20090310T120000\r\n", at("20090310T120000", "20090310T120000")},
        {noon + "DESCRIPTION:more\r\nLOCATION:here\r\nATTENDEE:mailto:a\r\n", held + "!dropped !dropped !dropped "},
        {"SUMMARY:" + std::string(81, 'x') + "\r\nDTSTART:20090310T120000\r\n",
         "DESCRIPTION=" + std::string(80, 'x') + " DTSTART=20090310T120000 DTEND=20090310T120000 !text-cut "},
        {"SUMMARY:\xE6\x97\xA5\r\nDTSTART:20090310T120000\r\n", "cannot hold !no-place-in-code-page "},
        // Whole days.
        {tea(";VALUE=DATE:20090228"), at("20090228T000000", "20090228T235900")},
        {tea(";VALUE=DATE:20090228\r\nDTEND;VALUE=DATE:20090302"), at("20090228T000000", "20090301T235900")},
        // Zones: UTC, and the clock's time for what repeats.
        {tea(";TZID=Custom:20090310T120000"), at("20090310T110000", "20090310T110000") + "TZID=UTC "},
        {tea(";TZID=Custom:20090310T003000\r\nRRULE:FREQ=WEEKLY;BYDAY=TU"),
         at("20090309T233000", "20090309T233000") + "RRULE=FREQ=WEEKLY;INTERVAL=1;BYDAY=MO !zone-dropped "},
        {tea(";TZID=Custom:20090310T003000\r\nRRULE:FREQ=MONTHLY"), "cannot hold !zone "},
        {tea(";TZID=Fixed:20090310T120000\r\nDURATION:PT1H\r\nRRULE:FREQ=DAILY;UNTIL=20090401T190000Z"),
         held + "TZID=MST RRULE=FREQ=DAILY;UNTIL=20090401T190000Z;INTERVAL=1 "},
        {tea(";TZID=Nowhere:20090310T120000\r\nDURATION:PT1H"), held + "!unknown-zone "},
        // Alarms.
        {alarm("TRIGGER:-PT15M"), held + "TRIGGER=15 "},
        {alarm("TRIGGER:-PT20M"), held + "TRIGGER=60 !alarm-moved "},
        {noon + "BEGIN:VALARM\r\nTRIGGER;VALUE=DATE-TIME:19760401T005545Z\r\nACTION:NONE\r\nEND:VALARM\r\n", held},
        {alarm("TRIGGER;RELATED=END:-PT1H"), held + "TRIGGER=0 "},
        {alarm("TRIGGER;VALUE=DATE-TIME:20090310T100000Z"), held + "TRIGGER=120 "},
        // Rules.
        {rule("FREQ=MONTHLY;BYDAY=TU;BYSETPOS=2;UNTIL=20091231"),
         held + "RRULE=FREQ=MONTHLY;UNTIL=20091231T235959Z;INTERVAL=1;BYDAY=2TU "},
        {rule("FREQ=WEEKLY;BYDAY=TH,TU;COUNT=4;WKST=SU"), held + "RRULE=FREQ=WEEKLY;COUNT=4;INTERVAL=1;BYDAY=TU,TH "},
        {rule("FREQ=WEEKLY;INTERVAL=2;BYDAY=SU,TU;WKST=SU"), "cannot hold !rule "},
        {rule("FREQ=YEARLY;BYDAY=TU;BYMONTH=3;BYSETPOS=2;UNTIL=99991231T000000Z"),
         held + "RRULE=FREQ=YEARLY;INTERVAL=1;BYDAY=2TU;BYMONTH=3 "},
        {rule("FREQ=HOURLY"), "cannot hold !rule "},
        {rule("FREQ=MONTHLY;BYDAY=3TU"), "cannot hold !start-not-in-rule "},
        // What is none.
        {"SUMMARY:Tea\r\n", "cannot hold !not-an-event "},
        {noon + "STATUS:CANCELLED\r\n", "cannot hold !cancelled "},
        {tea(":20091171T120000"), "cannot hold !no-time "},
        {tea(":19801231T120000"), "cannot hold !date-out-of-range "},
        {tea(":19801229T120000\r\nRRULE:FREQ=DAILY;COUNT=10"),
         at("19810101T120000", "19810101T120000") + "RRULE=FREQ=DAILY;COUNT=7;INTERVAL=1 !start-moved "},
        {tea(":20090310T120000\r\nDTEND:20090310T110000"), "cannot hold !ends-before-it-starts "},
    };
    for (const auto& [lines, shown] : cases) {
        const auto candidates = EventsOfFile("file", Calendar(kZone + Event(lines)));
        ASSERT_EQ(candidates.size(), 1u) << lines;
        EXPECT_EQ(Show(candidates.front()), shown) << lines;
    }
}

TEST(EventFile, EverythingInAFileIsSpokenOf)
{
    const std::string event = Event("SUMMARY:Tea\r\nDTSTART:20090310T120000\r\n");
    const auto candidates =
        EventsOfFile("file", Calendar(event + "BEGIN:VTODO\r\nSUMMARY:x\r\nEND:VTODO\r\n") + Calendar(event));
    std::string told;
    for (const Candidate& candidate : candidates)
        told += *candidate.entry.Find("DESCRIPTION") + std::to_string(candidate.line) + (candidate.isMeant ? "" : "-");
    EXPECT_EQ(told, "Tea4x10-Tea17");
    const std::string start = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n";
    for (const std::string& text : {std::string(), std::string("x"), start + "BEGIN:VEVENT\r\n"}) {
        const auto found = EventsOfFile("file", text);
        ASSERT_EQ(found.size(), 1u) << text;
        EXPECT_FALSE(found.front().fits) << text;
    }
    // An empty backup, and a program that does not name itself.
    EXPECT_TRUE(EventsOfFile("file", start + "END:VCALENDAR\r\n").empty());
    EXPECT_EQ(Show(EventsOfFile("file", start + event + "END:VCALENDAR\r\n").at(0)),
              "DESCRIPTION=Tea DTSTART=20090310T120000 DTEND=20090310T120000 ");
}

TEST(EventFile, LongIdsBecomeShortOnesThatDiffer)
{
    const auto uidOf = [](const std::string& uid) {
        std::string event = Event("SUMMARY:Tea\r\nDTSTART:20090310T120000\r\n");
        event.replace(event.find("UID:1"), 5, "UID:" + uid);
        return *EventsOfFile("file", Calendar(event)).at(0).entry.Find("UID");
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
        "BEGIN:VEVENT\r\nCREATED:20090105T080000Z\r\nLAST-MODIFIED:20090106T093000Z\r\n"
        "UID:{id, 1}\r\nDESCRIPTION:Caf\xE9, bar; b\\ar\r\nDTSTART;TZID=EST:20090310T100000\r\n"
        "DTEND;TZID=EST:20090310T120000\r\nRRULE:FREQ=MONTHLY;COUNT=5;INTERVAL=2;BYDAY=2TU\r\nBEGIN:VALARM\r\n"
        "TRIGGER:-P15M\r\nACTION;X-PHN-RINGER-ID:4\r\nEND:VALARM\r\n\r\nEND:VEVENT\r\n",
        "BEGIN:VEVENT\r\nCREATED:00000000T000000Z\r\nLAST-MODIFIED:00000000T000000Z\r\n"
        "UID:{}\r\nDESCRIPTION:\r\nDTSTART:20090302T091500Z\r\nDTEND:20090302T093000Z\r\n"
        "RRULE:FREQ=WEEKLY; BYDAY=MO,TU,WE,TH,FR\r\n\r\nEND:VEVENT\r\n",
    };
    for (const char* event : library) {
        const StoredEntry stored{
            3, EventFromLibrary(std::string("BEGIN:VCALENDAR\r\nVERSION:2.0\r\n") + event + "END:VCALENDAR\r\n")};
        EXPECT_EQ(EventFromLibrary(EventToLibrary(stored.entry)), stored.entry);
        const std::string file = FileOfEvents({&stored, 1});
        const auto back = EventsOfFile("file", file);
        ASSERT_EQ(back.size(), 1u);
        EXPECT_TRUE(back.front().notes.empty());
        EXPECT_EQ(back.front().entry, stored.entry) << file;
    }
}

// The starts of the events of a calendar, as libical finds them.
std::multiset<std::string> StartsIn(const std::string& calendar)
{
    std::multiset<std::string> starts;
    const std::unique_ptr<icalcomponent, decltype(&icalcomponent_free)> root(icalparser_parse_string(calendar.c_str()),
                                                                             icalcomponent_free);
    const auto add = [](icalcomponent*, icaltime_span* span, void* data) {
        static_cast<std::multiset<std::string>*>(data)->insert(EventTimeText(TimeOf(span->start)));
    };
    for (icalcomponent* event = icalcomponent_get_first_component(root.get(), ICAL_VEVENT_COMPONENT); event;
         event = icalcomponent_get_next_component(root.get(), ICAL_VEVENT_COMPONENT))
        icalcomponent_foreach_recurrence(event, icaltime_from_string("19810101T000000Z"),
                                         icaltime_from_string("20380101T000000Z"), add, &starts);
    return starts;
}

TEST(EventFile, ASeriesGoesOnWithoutItsExceptions)
{
    SetLocalZone("CET-1CEST,M3.5.0,M10.5.0/3");
    const auto candidates =
        EventsOfFile("file", Calendar(kZone +
                                      Event("SUMMARY:Tea\r\nDTSTART;TZID=Custom:20090310T120000\r\nDURATION:PT1H\r\n"
                                            "RRULE:FREQ=WEEKLY;BYDAY=TU,TH;COUNT=10\r\nEXDATE:20090317T110000Z\r\n"
                                            "EXDATE;TZID=Custom:20090331T120000,20090330T120000\r\n") +
                                      Event("SUMMARY:Tea\r\nDTSTART;TZID=Custom:20090327T150000\r\nDURATION:PT1H\r\n"
                                            "RECURRENCE-ID;TZID=Custom:20090326T120000\r\n") +
                                      Event("SUMMARY:Tea\r\nDTSTART;TZID=Custom:20090402T120000\r\n"
                                            "RECURRENCE-ID:20090402T100000Z\r\nSTATUS:CANCELLED\r\n")));
    std::vector<StoredEntry> stored;
    std::set<std::string> uids;
    for (const Candidate& candidate : candidates) {
        EXPECT_TRUE(candidate.fits || !candidate.isMeant) << Show(candidate);
        if (!candidate.isMeant)
            continue;
        EXPECT_TRUE(uids.insert(*candidate.entry.Find("UID")).second) << Show(candidate);
        stored.push_back({0, candidate.entry});
    }
    const std::string file = FileOfEvents(stored);
    const std::multiset<std::string> expected{"20090310T120000", "20090312T120000", "20090319T120000",
                                              "20090324T120000", "20090327T140000", "20090407T120000",
                                              "20090409T120000"};
    EXPECT_EQ(StartsIn(file), expected) << file;
}

TEST(EventFile, TheLastOccurrenceIsTheSameForOtherPrograms)
{
    SetLocalZone("EST5EDT,M3.2.0,M11.1.0");
    const struct
    {
        std::string start, end, until; // as the library writes them
        std::size_t count;
    } cases[] = {
        {":20091201T200000", ":20091201T210000", "20091204T010000Z", 3}, // 20:00 of the third
        {":20091201T000000", ":20091201T235900", "20091204T045959Z", 3},
        {";TZID=EST:20091201T200000", ";TZID=EST:20091201T210000", "20091204T010000Z", 3},
        {":20091201T200000Z", ":20091201T210000Z", "20091203T195959Z", 2},
    };
    for (const auto& [start, end, until, count] : cases) {
        const Entry entry =
            EventFromLibrary("BEGIN:VEVENT\r\nUID:{1}\r\nDESCRIPTION:Tea\r\nDTSTART" + start + "\r\nDTEND" + end +
                             "\r\nRRULE:FREQ=DAILY;UNTIL=" + until + ";INTERVAL=1\r\nEND:VEVENT\r\n");
        const StoredEntry stored{0, entry};
        const std::string file = FileOfEvents({&stored, 1});
        EXPECT_EQ(StartsIn(file).size(), count) << file;
        EventDraft draft = DraftOf(entry);
        draft.rule.EndInOwnTime(draft.zone);
        EXPECT_EQ(Occurrences(*draft.start, draft.rule, {}, {9998}, 99).size(), count) << file;
        EXPECT_EQ(EventsOfFile("file", file).front().entry, entry) << file;
    }
}

TEST(EventFile, NoIdIsThereTwice)
{
    const Entry event = EventFromLibrary("BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:{1}\r\nDESCRIPTION:Tea\r\n"
                                         "DTSTART:20090310T120000\r\nDTEND:20090310T120000\r\nEND:VEVENT\r\n");
    const std::vector<StoredEntry> twice{{0, event}, {1, event}};
    const std::string file = FileOfEvents(twice);
    EXPECT_NE(file.find("\nUID:1\r\n"), std::string::npos);
    EXPECT_EQ(file.find("\nUID:1\r\n"), file.rfind("\nUID:1\r\n"));
    for (const Candidate& candidate : EventsOfFile("file", file))
        EXPECT_EQ(candidate.entry, event);
}

TEST(EventFile, NotesNameThePropertyAndItsLine)
{
    std::string told;
    for (const Note& note : EventsOfFile("file", Calendar(Event("SUMMARY:Te\r\n a\r\nDTSTART:20090310T120000\r\n"
                                                                "LOCATION:here\r\nRRULE:FREQ=HOURLY\r\n")))
                                .at(0)
                                .notes)
        told += note.property + std::to_string(note.line) + ' ';
    EXPECT_EQ(told, "LOCATION10 RRULE11 ");
}

TEST(EventRule, IsToldInWords)
{
    const struct
    {
        const char* rule;
        const char* words;
    } cases[] = {
        {"FREQ=DAILY;COUNT=1;INTERVAL=3", "every 3 days, once"},
        {"FREQ=WEEKLY; BYDAY=MO,TU,WE,TH,FR", "every weekday"},
        {"FREQ=MONTHLY;UNTIL=20091231T000000Z;BYDAY=2TU", "every second Tuesday of the month until 2009-12-31"},
        {"FREQ=MONTHLY;BYDAY=-1FR,1MO", "every first Monday and last Friday of the month"},
        {"FREQ=MONTHLY;INTERVAL=2;BYDAY=-2TU", "every 2 months, on the second to last Tuesday of the month"},
        {"FREQ=MONTHLY;BYMONTHDAY=1,15,-1", "every month on day 1, day 15 and the last day"},
        {"FREQ=YEARLY;BYMONTH=3,4;BYMONTHDAY=-1;COUNT=5", "every year in March and April on the last day, 5 times"},
    };
    for (const auto& [text, words] : cases)
        EXPECT_EQ(RuleInWords(text, "UTC"), words);
}

} // namespace
} // namespace phnctl
