// phnctl events with a handset: what is coming, what goes over, and that nothing is lost on the way.
#include "phnctl/handset_run.h"

#include <algorithm>
#include <libical/ical.h>
#include <set>
#include <tuple>

namespace {

class Events : public HandsetRun
{
protected:
    Events() { m_program.Set("TZ", "CET-1CEST,M3.5.0,M10.5.0/3"); }
    std::map<std::uint32_t, simulator::Event> Stored() { return Held().events; }
};

const std::string kTea = "UID:tea@example.org\nSUMMARY:Tea\nDURATION:PT1H\n";

// A calendar of events, each with these lines and its own.
std::string Calendar(const std::vector<std::string>& events, const std::string& lines = kTea)
{
    std::string text = "BEGIN:VCALENDAR\nVERSION:2.0\nPRODID:-//Example//EN\n";
    for (const std::string& event : events)
        text += "BEGIN:VEVENT\n" + lines + event + "END:VEVENT\n";
    return text + "END:VCALENDAR\n";
}

TEST_F(Events, ListsWhatIsComingInOrderInLocalTime)
{
    const Outcome list = Expect(0, "events list --from 2009-03-10 --days 1");
    std::size_t at = 0;
    for (const char* line : {"Tue 2009-03-10 06:30  07:30  Swimming", "every week on Tuesday and Thursday",
                             "1 hour before     25\n", "Tue 2009-03-10 07:30  07:35  Take the pills",
                             "every day, 30 times", "Tue 2009-03-10 09:15  09:30  Stand-up meeting", "every weekday",
                             "Tue 2009-03-10 16:00  18:00  Board: second Tuesday", // in EST
                             "Tue 2009-03-10 21:00  21:30  Call with the office (PST)", "\n5 occurrences from "}) {
        const std::size_t found = list.out.find(line, at);
        ASSERT_NE(found, std::string::npos) << line << "\n" << list.out;
        at = found;
    }
    Expect(0, "events list --from 2009-03-29 --days 1 --json",
           {"\"start\":\"2009-03-29T00:30:00+01:00\",\"end\":\"2009-03-29T09:00:00+02:00\""});
    Expect(0, "events list --stored --range 27-27", {"every second Tuesday of the month"});
    Expect(2, "events list --from yesterday");
}

TEST_F(Events, AnExportIsACalendarAndComesBackWithoutALoss)
{
    const Outcome text = Expect(0, "events export -");
    icalcomponent* const calendar = icalparser_parse_string(text.out.c_str());
    EXPECT_TRUE(calendar && icalrestriction_check(calendar) && icalcomponent_count_errors(calendar) == 0);
    icalcomponent_free(calendar);

    const auto before = Stored();
    Expect(0, "events import --json " + File("all.ics", text.out),
           {"\"add\":0,\"change\":0,\"same\":35,\"cannotHold\":0"});
    Expect(0, "events clear --yes --copy " + Path("copy.ics"));
    ASSERT_TRUE(Stored().empty());
    Expect(0, "events import " + Path("copy.ics"), {"35 events: 35 added.\n35 of 35 are on the handset.\n"});
    const auto values = [](const simulator::Event& event) {
        return std::tuple(event.uid, event.start.hour, event.zone, event.alarm, event.repeatCount);
    };
    for (const auto& [index, event] : Stored())
        EXPECT_EQ(values(event), values(before.at(index))) << index;
}

TEST_F(Events, AForeignCalendarIsPlannedWrittenAndItsCopyComesBack)
{
    const std::string file =
        File("new.ics", Calendar({"UID:a\nSUMMARY:New\nDTSTART:20090415T100000Z\n"
                                  "BEGIN:VALARM\nACTION:AUDIO\nTRIGGER:-PT15M\nEND:VALARM\n",
                                  "UID:fjord40-0000\nSUMMARY:Changed\nDTSTART:20090302T120000\n",
                                  "UID:c\nSUMMARY:Hourly\nDTSTART:20090302T120000\nRRULE:FREQ=HOURLY\n"},
                                 ""));
    Expect(1, "events import --dry-run " + file, {"1 to add, 1 to change, 1 that the handset cannot hold"});
    EXPECT_EQ(Handset().Requests(31), 0u);
    Expect(1, "events import --copy " + Path("old.ics") + " " + file, {"2 of 3 are on the handset.\n"});
    const simulator::Event added = Stored().at(35);
    EXPECT_EQ(added.description, "New");
    EXPECT_EQ(added.zone, 1u);
    EXPECT_EQ(added.alarm, 1);
    EXPECT_EQ(Stored().at(0).description, "Changed");
    Expect(0, "events import " + Path("old.ics") + " --no-copy");
    EXPECT_EQ(Stored().at(0).description, "Call with the office (local time)");
    Expect(0, "events delete 35 --yes --no-copy");
    EXPECT_EQ(Stored().size(), 35u);
}

TEST_F(Events, AWholeDayStaysOneAndAToDoIsNoFailure)
{
    const std::string file =
        File("days.ics", "BEGIN:VCALENDAR\nBEGIN:VTODO\nSUMMARY:Milk\nEND:VTODO\nBEGIN:VEVENT\nUID:a\nSUMMARY:Fair\n"
                         "DTSTART;VALUE=DATE:20090415\nDTEND;VALUE=DATE:20090417\nEND:VEVENT\nEND:VCALENDAR\n");
    Expect(0, "events import " + file,
           {"left out     " + file + ":2  Milk\n", "2 events: 1 added, 1 left out.\n1 of 1 is on the handset.\n"});
    Expect(0, "events list --from 2009-04-15 --days 1", {"Wed 2009-04-15        2009-04-16"});
    Expect(0, "events export -", {"DTSTART;VALUE=DATE:20090415\r\nDTEND;VALUE=DATE:20090417\r\n"});
}

// "10:12 11:12" of two days of a month, of daily events.
std::string StartsOf(const std::map<std::uint32_t, simulator::Event>& events)
{
    std::multiset<std::string> starts;
    for (const auto& [index, event] : events)
        for (unsigned day = 0; day < std::max(event.repeatCount, 1u); ++day)
            starts.insert(std::to_string(event.start.day + day) + ':' + std::to_string(event.start.hour));
    std::string text;
    for (const std::string& start : starts)
        text += (text.empty() ? "" : " ") + start;
    return text;
}

TEST_F(Events, AnImportLeavesTheOccurrencesOfItsFileAndNoneOfAnEarlierOne)
{
    const auto series = [](const std::string& count, const std::string& more) {
        return "DTSTART:20090310T120000\nRRULE:FREQ=DAILY;COUNT=" + count + "\n" + more;
    };
    const std::string without = "EXDATE:20090311T120000\n";
    const std::string moved = "RECURRENCE-ID:20090313T120000\nDTSTART:20090313T150000\n";
    const std::tuple<std::vector<std::string>, const char*, const char*> versions[] = {
        {{series("4", "")}, "10:12 11:12 12:12 13:12", ""},
        {{series("5", without), moved}, "10:12 12:12 13:15 14:12", ""},
        {{moved}, "10:12 12:12 13:15 14:12", ""}, // says nothing of the series
        {{series("5", without), moved + "STATUS:CANCELLED\n"}, "10:12 12:12 14:12", ""},
        {{series("5", without)}, "10:12 12:12 13:12 14:12", ""},
        {{series("6", without), "RECURRENCE-ID;RANGE=THISANDFUTURE:20090313T120000\nDTSTART:20090313T150000\n"},
         "10:12 12:12 13:15 14:15 15:15",
         ""},
        {{series("4", "STATUS:CANCELLED\n")}, "10:12 12:12 13:15 14:15 15:15", "still-there: "},
        {{"DTSTART:20090310T120000\n"}, "10:12", ""},
    };
    Handset().Change(0, [](simulator::Phone& phone) { phone.events.clear(); });
    for (const auto& [events, starts, says] : versions) {
        Expect(0, "events import --no-copy " + File("tea.ics", Calendar(events)), {says});
        EXPECT_EQ(StartsOf(Stored()), starts) << Calendar(events);
    }
    // What the handset cannot hold leaves the version that it has.
    const std::string refused = "DTSTART:20090310T120000\nRRULE:FREQ=DAILY;BYSETPOS=1;BYDAY=TU\n";
    Expect(1, "events import --no-copy " + File("tea.ics", Calendar({refused})), {"still-there: "});
    EXPECT_EQ(StartsOf(Stored()), "10:12");
}

TEST_F(Events, ASeriesIsTheSameFromAnotherZone)
{
    const std::string file =
        File("tea.ics", Calendar({"DTSTART:20090310T120000\nRRULE:FREQ=DAILY;COUNT=9\nEXDATE:20090312T120000\n",
                                  "RECURRENCE-ID:20090315T120000\nDTSTART:20090315T150000Z\n"}));
    Expect(0, "events import " + file);
    m_program.Set("TZ", "EST5EDT,M3.2.0,M11.1.0");
    Expect(0, "events import " + file, {"4 events: 4 there already."});
}

TEST_F(Events, StalePartsAreShownKeptInACopyAndDeletedLast)
{
    const std::string rule = "DTSTART:20090310T120000\nRRULE:FREQ=WEEKLY;COUNT=8\n";
    Expect(0, "events import " + File("old.ics", Calendar({rule + "EXDATE:20090317T120000\n"})));
    const std::string file = File("new.ics", Calendar({rule}));
    Expect(0, "events import --dry-run " + file,
           {"delete       Tea  (index 36)\n    stale-part: ", "\n1 event of the handset to delete.\n"});
    EXPECT_EQ(Stored().size(), 37u);
    // Not while the series is not on the handset.
    Handset().AddFault("result=9@31*1");
    Expect(1, "events import --no-copy " + file, {"not deleted  Tea  (index 36)"});
    Expect(0, "events import --json --copy " + Path("copy.ics") + " " + file,
           {"\"index\":36,\"result\":\"deleted\",\"notes\":[{\"code\":\"stale-part\""});
    EXPECT_EQ(Stored().size(), 36u);
    Expect(0, "events import --dry-run " + Path("copy.ics"), {"1 to add, 1 to change"});
}

} // namespace
