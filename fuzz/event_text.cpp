// A host's iCalendar text becomes a record; where the record has a text, that text is taken again and is the same
// event.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "calendar/calendar_ex.h"
#include "fuzz/fuzz_world.h"

namespace {

bool Read(const char* text, size_t size, CAL_EVENT_INFO* record)
{
    CCalendarEx calendar;
    ICAL_PROPERTIES properties;
    *record = {};
    return calendar.iCalendarToNorvik(record, &properties, text, static_cast<DWORD>(size));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    fuzz::World::Get();
    static const int zone = setenv("TZ", "UTC0", 1); // whose clocks never turn an alarm behind its start
    if (zone != 0)
        std::abort();
    const std::unique_ptr<char[]> exact(new char[size]); // reading beyond it is found out
    std::copy_n(data, size, exact.get());
    CAL_EVENT_INFO record;
    if (!Read(exact.get(), size, &record))
        return 0;
    std::string text;
    if (!CCalendarEx().NorvikToiCalendar(&text, &record))
        std::abort(); // the zone and the alarm of a text can be written
    // A rule without a frequency is written but not taken, nor one that lists the start only by what is not written.
    CAL_EVENT_INFO again;
    if (record.dwRepeatType == 0 || !Read(text.data(), text.size(), &again))
        return 0;
    if (std::memcmp(&record.tmStart, &again.tmStart, sizeof record.tmStart + sizeof record.tmEnd) != 0 ||
        record.dwTimeZoneID != again.dwTimeZoneID || record.dwRepeatType != again.dwRepeatType ||
        std::max(uint32_t{record.dwInterval}, uint32_t{1}) != again.dwInterval) // 0 is not written
        std::abort();
    return 0;
}
