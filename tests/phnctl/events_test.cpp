// phnctl events with a handset: what is coming, what goes over, and that nothing is lost on the way.
#include "phnctl/handset_run.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <libical/ical.h>
#include <set>
#include <tuple>

namespace phnctl_test {
namespace {

class Events : public HandsetRun
{
protected:
    Events()
    {
        m_program.Set("PHNNRV_TIME_SCALE", "0.2");
        m_program.Set("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    }
    std::string File(const std::string& name, const std::string& text)
    {
        std::ofstream(m_folder.Path() / name, std::ios::binary) << text;
        return Path(name);
    }
    std::string Path(const std::string& name) const { return (m_folder.Path() / name).string(); }
    std::map<std::uint32_t, simulator::Event> Stored() { return Handset().Snapshot().events; }

    simulator::DeviceDirectory m_folder;
};

bool Has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

TEST_F(Events, ListsWhatIsComingInOrderInLocalTime)
{
    const Outcome list = Run("events list --from 2009-03-10 --days 1");
    EXPECT_EQ(list.status, 0) << list.err;
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
    const Outcome night = Run("events list --from 2009-03-29 --days 1 --json");
    EXPECT_TRUE(Has(night.out, "\"start\":\"2009-03-29T00:30:00+01:00\",\"end\":\"2009-03-29T09:00:00+02:00\""))
        << night.out;
    EXPECT_TRUE(Has(Run("events list --stored --range 27-27").out, "every second Tuesday of the month"));
    EXPECT_TRUE(Has(Run("events get 29").out, "Alarm     1 day before\n"));
    EXPECT_EQ(Run("events list --from yesterday").status, 2);
}

TEST_F(Events, AnExportIsACalendarAndComesBackWithoutALoss)
{
    const Outcome text = Run("events export -");
    ASSERT_EQ(text.status, 0) << text.err;
    icalcomponent* const calendar = icalparser_parse_string(text.out.c_str());
    ASSERT_TRUE(calendar);
    EXPECT_EQ(icalcomponent_count_errors(calendar), 0);
    EXPECT_TRUE(icalrestriction_check(calendar));
    EXPECT_EQ(icalcomponent_count_components(calendar, ICAL_VEVENT_COMPONENT), 35);
    EXPECT_EQ(icalcomponent_count_errors(calendar), 0) << "found by the check";
    icalcomponent_free(calendar);

    const std::string file = File("all.ics", text.out);
    const auto before = Stored();
    const Outcome none = Run("events import --json " + file);
    EXPECT_TRUE(Has(none.out, "\"add\":0,\"change\":0,\"same\":35,\"cannotHold\":0")) << none.out << none.err;
    ASSERT_EQ(Run("events clear --yes --copy " + Path("copy.ics")).status, 0);
    ASSERT_TRUE(Stored().empty());
    const Outcome back = Run("events import " + Path("copy.ics"));
    EXPECT_EQ(back.status, 0) << back.err << back.out;
    EXPECT_TRUE(Has(back.out, "35 events: 35 added.\n35 of 35 are on the handset.\n")) << back.out;
    EXPECT_TRUE(Run("events export -").out == text.out);
    const auto values = [](const simulator::Event& event) {
        return std::tuple(event.uid, event.start.hour, event.zone, event.alarm, event.repeatCount,
                          event.byMonthDayFromEnd);
    };
    for (const auto& [index, event] : Stored())
        EXPECT_EQ(values(event), values(before.at(index)));
}

TEST_F(Events, AForeignCalendarIsPlannedWrittenAndNotWrittenTwice)
{
    const std::string file =
        File("new.ics", "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Example//EN\r\n"
                        "BEGIN:VEVENT\r\nUID:a\r\nDTSTAMP:20090101T000000Z\r\nSUMMARY:New\r\n"
                        "DTSTART:20090415T100000Z\r\nDURATION:PT1H\r\nBEGIN:VALARM\r\nACTION:AUDIO\r\n"
                        "TRIGGER:-PT15M\r\nEND:VALARM\r\nEND:VEVENT\r\n"
                        "BEGIN:VEVENT\r\nUID:fjord40-0000\r\nDTSTAMP:20090101T000000Z\r\nSUMMARY:Changed\r\n"
                        "DTSTART:20090302T120000\r\nDTEND:20090302T123000\r\nEND:VEVENT\r\n"
                        "BEGIN:VEVENT\r\nUID:c\r\nDTSTAMP:20090101T000000Z\r\nSUMMARY:Hourly\r\n"
                        "DTSTART:20090302T120000\r\nRRULE:FREQ=HOURLY\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
    const Outcome plan = Run("events import --dry-run " + file);
    EXPECT_TRUE(Has(plan.out, "1 to add, 1 to change, 1 that the handset cannot hold")) << plan.out;
    EXPECT_EQ(Handset().Requests(31), 0u);
    const Outcome first = Run("events import --copy " + Path("old.ics") + " " + file);
    EXPECT_EQ(first.status, 1);
    EXPECT_TRUE(Has(first.out, "2 of 3 are on the handset.\n")) << first.out << first.err;
    const simulator::Event added = Stored().at(35);
    EXPECT_EQ(added.description, "New");
    EXPECT_EQ(added.zone, 1u);
    EXPECT_EQ(added.alarm, 1);
    EXPECT_EQ(added.ringer, 255u);
    EXPECT_EQ(Stored().at(0).description, "Changed");
    EXPECT_EQ(Run("events import " + Path("old.ics") + " --no-copy").status, 0);
    EXPECT_EQ(Stored().at(0).description, "Call with the office (local time)");
    EXPECT_EQ(Run("events delete 35 --yes --no-copy").status, 0);
    EXPECT_EQ(Stored().size(), 35u);
    EXPECT_EQ(Run("events get 35").status, 1);
}

TEST_F(Events, AWholeDayStaysOneAndAToDoIsNoFailure)
{
    const std::string file = File("days.ics", "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Example//EN\r\n"
                                              "BEGIN:VTODO\r\nSUMMARY:Milk\r\nEND:VTODO\r\nBEGIN:VEVENT\r\nUID:a\r\n"
                                              "SUMMARY:Fair\r\nDTSTART;VALUE=DATE:20090415\r\n"
                                              "DTEND;VALUE=DATE:20090417\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
    const Outcome import = Run("events import " + file);
    EXPECT_EQ(import.status, 0) << import.out << import.err;
    EXPECT_TRUE(Has(import.out, "left out     " + file + ":4  Milk\n")) << import.out;
    EXPECT_TRUE(Has(import.out, "2 events: 1 added, 1 left out.\n1 of 1 is on the handset.\n")) << import.out;
    EXPECT_TRUE(
        Has(Run("events list --from 2009-04-15 --days 1").out, "Wed 2009-04-15        Thu 2009-04-16, all day"));
    const Outcome exported = Run("events export -");
    EXPECT_TRUE(Has(exported.out, "DTSTART;VALUE=DATE:20090415\r\nDTEND;VALUE=DATE:20090417\r\n")) << exported.out;
    EXPECT_TRUE(Has(Run("events import -", exported.out).out, "36 events: 36 there already.\n"));
}

std::string Calendar(const std::vector<std::string>& events)
{
    std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Example//EN\r\n";
    for (const std::string& event : events)
        text += "BEGIN:VEVENT\r\nUID:tea@example.org\r\nSUMMARY:Tea\r\nDURATION:PT1H\r\n" + event + "END:VEVENT\r\n";
    return text + "END:VCALENDAR\r\n";
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
        return "DTSTART:20090310T120000\r\nRRULE:FREQ=DAILY;COUNT=" + count + "\r\n" + more;
    };
    const std::string without = "EXDATE:20090311T120000\r\n";
    const std::string moved = "RECURRENCE-ID:20090313T120000\r\nDTSTART:20090313T150000\r\n";
    const std::string cancelled = series("4", "STATUS:CANCELLED\r\n");
    // The first part without its rule is what the handset holds.
    const std::string refused = "DTSTART:20090310T120000\r\nRRULE:FREQ=DAILY;BYSETPOS=1;BYDAY=TU\r\n";
    const std::string newer = series("3", "SEQUENCE:1\r\n");
    const struct
    {
        std::vector<std::string> events;
        const char* starts;
    } versions[] = {
        {{series("4", "")}, "10:12 11:12 12:12 13:12"},
        {{series("4", without)}, "10:12 12:12 13:12"},
        {{series("5", without), moved}, "10:12 12:12 13:15 14:12"},
        {{moved}, "10:12 12:12 13:15 14:12"}, // says nothing of the series
        {{series("5", without), moved + "STATUS:CANCELLED\r\n"}, "10:12 12:12 14:12"},
        {{series("5", ""), moved}, "10:12 11:12 12:12 13:15 14:12"},
        {{series("5", without)}, "10:12 12:12 13:12 14:12"},
        {{series("4", without + "EXDATE:20090310T120000\r\n"), moved}, "12:12 13:15"},
        {{series("6", without), "RECURRENCE-ID;RANGE=THISANDFUTURE:20090313T120000\r\nDTSTART:20090313T150000\r\n"},
         "10:12 12:12 13:15 14:15 15:15"},
        {{series("2", without + "EXDATE:20090310T120000\r\n")}, ""},
        {{series("4", without), moved}, "10:12 12:12 13:15"},
        {{cancelled}, "10:12 12:12 13:15"}, // stays, and the plan says so
        {{refused}, "10:12 12:12 13:15"},
        {{newer, series("5", without)}, "10:12 11:12 12:12"},
        {{series("5", without), moved, newer}, "10:12 11:12 12:12 13:15"},
        {{"DTSTART:20090310T120000\r\n"}, "10:12"},
    };
    ASSERT_EQ(Run("events clear --yes --no-copy").status, 0);
    for (const auto& [events, starts] : versions) {
        const Outcome import = Run("events import --no-copy " + File("tea.ics", Calendar(events)));
        EXPECT_EQ(import.status, events.front() == refused ? 1 : 0) << import.out << import.err;
        EXPECT_EQ(Has(import.out, "still-there: "), events.front() == cancelled || events.front() == refused)
            << import.out;
        EXPECT_EQ(Has(import.out, "older-version: "), events.back() == newer || events.front() == newer) << import.out;
        EXPECT_EQ(StartsOf(Stored()), starts) << Calendar(events) << import.out;
    }
}

TEST_F(Events, OfSeveralFilesTheNewestVersionCounts)
{
    const auto version = [&](const char* name, const std::string& more) {
        return " " + File(name, Calendar({"DTSTART:20090310T120000\r\nRRULE:FREQ=DAILY;COUNT=4\r\n" + more}));
    };
    const std::string files = version("a.ics", "EXDATE:20090311T120000\r\n") + version("b.ics", "SEQUENCE:10\r\n") +
                              version("c.ics", "SEQUENCE:9\r\n");
    ASSERT_EQ(Run("events clear --yes --no-copy").status, 0);
    EXPECT_TRUE(Has(Run("events import" + files).out, "4 events: 1 added, 3 left out.\n"));
    EXPECT_EQ(StartsOf(Stored()), "10:12 11:12 12:12 13:12");
}

TEST_F(Events, ASeriesIsTheSameFromAnotherZone)
{
    const std::string file = File("tea.ics", Calendar({"DTSTART:20090310T120000\r\nRRULE:FREQ=DAILY;COUNT=9\r\n"
                                                       "EXDATE:20090312T120000\r\n",
                                                       "RECURRENCE-ID:20090315T120000\r\n"
                                                       "DTSTART:20090315T150000Z\r\n"}));
    ASSERT_EQ(Run("events import " + file).status, 0);
    m_program.Set("TZ", "EST5EDT,M3.2.0,M11.1.0");
    EXPECT_TRUE(Has(Run("events import " + file).out, "4 events: 4 there already."));
}

TEST_F(Events, StalePartsAreShownKeptInACopyAndDeletedLast)
{
    const std::string rule = "DTSTART:20090310T120000\r\nRRULE:FREQ=WEEKLY;COUNT=8\r\n";
    ASSERT_EQ(Run("events import " + File("old.ics", Calendar({rule + "EXDATE:20090317T120000\r\n"}))).status, 0);
    std::string other = Calendar({"DTSTART:20090310T120000\r\n"});
    other.replace(other.find("tea@example.org"), 15,
                  "tea~0123456789abcdef.2"); // looks like a part, and is none of this
    ASSERT_EQ(Run("events import " + File("other.ics", other)).status, 0);
    const std::string file = File("new.ics", Calendar({rule}));
    const Outcome plan = Run("events import --dry-run " + file);
    EXPECT_TRUE(Has(plan.out,
                    "delete       Tea  (index 36)\n    stale-part: part 2 of the series, from Tue 2009-03-24 12:00 "
                    "on, which the file no longer has\n"))
        << plan.out;
    EXPECT_TRUE(Has(plan.out, "\n1 event of the handset to delete.\n")) << plan.out;
    EXPECT_EQ(Stored().size(), 38u);
    // Not while the series is not on the handset.
    Handset().AddFault("result=9@31*1");
    const Outcome failed = Run("events import --no-copy " + file);
    EXPECT_TRUE(Has(failed.out, "not deleted  Tea  (index 36)")) << failed.out;
    EXPECT_EQ(failed.status, 1);
    const Outcome done = Run("events import --json --copy " + Path("copy.ics") + " " + file);
    EXPECT_TRUE(Has(done.out, "\"index\":36,\"result\":\"deleted\",\"notes\":[{\"code\":\"stale-part\"")) << done.out;
    EXPECT_EQ(Stored().size(), 37u);
    EXPECT_TRUE(Has(Run("events import --dry-run " + Path("copy.ics")).out, "1 to add, 1 to change"));
}

TEST_F(Events, AnEventIsNotStoredTwiceUnsaid)
{
    const std::string file = File("one.ics", Run("events export - --range 3-3").out);
    EXPECT_TRUE(Has(Run("events put --dry-run " + file + " 50").out, "held-elsewhere: ")) << file;
    EXPECT_FALSE(Has(Run("events put --dry-run " + file + " 3").out, "held-elsewhere: "));
    for (const std::string text : {"", "hello", "BEGIN:VCALENDAR\r\nEND:VCALENDAR\r\n"}) {
        const Outcome none = Run("events import " + File("none.ics", text));
        EXPECT_EQ(none.status, 2) << text;
        EXPECT_TRUE(Has(none.err, "none.ics holds no event")) << none.err;
    }
}

} // namespace
} // namespace phnctl_test
