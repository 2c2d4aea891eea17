// The iCalendar conversion beside libical on the same event, and the reader on texts of two lengths. TZ is set: without
// it the C library looks at a file for every conversion of a time.
#include <cstdlib>
#include <string>

#include <benchmark/benchmark.h>
#include <libical/ical.h>

#include "calendar/calendar_ex.h"
#include "ratio.h"

namespace {

// An event with a rule and an alarm. The lines of the latter are where the dialects differ.
std::string Event(const std::string& trigger, const std::string& action, const std::string& more = {})
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nCREATED:20090105T080000Z\r\n"
           "LAST-MODIFIED:20090106T093000Z\r\nUID:{fjord40-0027}\r\nDESCRIPTION:Board: second Tuesday\r\n"
           "DTSTART;TZID=EST:20090310T100000\r\nDTEND;TZID=EST:20090310T120000\r\n" +
           more + "RRULE:FREQ=MONTHLY;COUNT=5;INTERVAL=2;BYDAY=2TU\r\nBEGIN:VALARM\r\n" + trigger + "\r\n" + action +
           "\r\nEND:VALARM\r\n\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
}

const std::string kEvent = Event("TRIGGER:-P15M", "ACTION;X-PHN-RINGER-ID:4");
const std::string kStandardEvent = Event("TRIGGER:-PT15M", "ACTION:AUDIO");

bool Convert(CCalendarEx& calendar, const std::string& text, CAL_EVENT_INFO* record)
{
    ICAL_PROPERTIES properties;
    *record = {};
    return calendar.iCalendarToNorvik(record, &properties, text.data(), static_cast<DWORD>(text.size()));
}

void ToRecord(benchmark::State& state, const std::string& text)
{
    CCalendarEx calendar;
    CAL_EVENT_INFO record;
    for (auto _ : state) {
        if (!Convert(calendar, text, &record))
            state.SkipWithError("rejected");
        benchmark::DoNotOptimize(record);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void ToText(benchmark::State& state)
{
    CCalendarEx calendar;
    CAL_EVENT_INFO record;
    Convert(calendar, kEvent, &record);
    for (auto _ : state) {
        std::string text;
        if (!calendar.NorvikToiCalendar(&text, &record))
            state.SkipWithError("rejected");
        benchmark::DoNotOptimize(text);
    }
}

void LibicalParses(benchmark::State& state)
{
    for (auto _ : state) {
        icalcomponent* const calendar = icalparser_parse_string(kStandardEvent.c_str());
        benchmark::DoNotOptimize(calendar);
        icalcomponent_free(calendar);
    }
}

void LibicalWrites(benchmark::State& state)
{
    icalcomponent* const calendar = icalparser_parse_string(kStandardEvent.c_str());
    for (auto _ : state) {
        char* const text = icalcomponent_as_ical_string_r(calendar);
        benchmark::DoNotOptimize(text);
        std::free(text);
    }
    icalcomponent_free(calendar);
}

// An event with a line that never ends, as long as stated.
std::string EndlessLine(size_t length)
{
    std::string text = Event("TRIGGER:-P15M", "ACTION;X-PHN-RINGER-ID:4", "X-NOISE:");
    return text.insert(text.find("X-NOISE:") + 8, std::string(length, 'D') + "\r\n");
}

} // namespace

int main(int argc, char** argv)
{
    setenv("TZ", "EST5EDT,M3.2.0,M11.1.0", 1);
    const std::string shorter = EndlessLine(1 << 16);
    const std::string longer = EndlessLine(1 << 20);
    benchmark::RegisterBenchmark("to_record", ToRecord, kEvent)->Repetitions(5);
    benchmark::RegisterBenchmark("libical_parses", LibicalParses)->Repetitions(5);
    benchmark::RegisterBenchmark("to_text", ToText)->Repetitions(5);
    benchmark::RegisterBenchmark("libical_writes", LibicalWrites)->Repetitions(5);
    benchmark::RegisterBenchmark("line_of_64k", ToRecord, shorter)->Repetitions(5);
    benchmark::RegisterBenchmark("line_of_1m", ToRecord, longer)->Repetitions(5);

    using bench::Bound;
    return bench::RunBenchmarks(argc, argv,
                                {
                                    {"event: text to record", "to_record", "libical_parses", Bound::AtMost, 1.0 / 3},
                                    {"event: record to text", "to_text", "libical_writes", Bound::AtMost, 1},
                                    {"sixteen times the text", "line_of_1m", "line_of_64k", Bound::AtMost, 24},
                                });
}
