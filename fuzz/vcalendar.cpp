// Any file as a vCalendar: nothing crashes or hangs, and every line that is made of it stands where one of its own
// does.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "phnctl/events/foreign/vcalendar.h"

namespace {

void Require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace phnctl;
    const std::string text = "BEGIN:VCALENDAR\nVERSION:1.0\n" + std::string(reinterpret_cast<const char*>(data), size);
    ContentLineReader reader(text);
    VCalendarReader calendar;
    ContentLine line;
    while (reader.Next(line)) {
        const std::size_t number = line.line;
        for (const ContentLine& plain : calendar.Take(std::move(line)))
            Require(plain.line != 0 && plain.line <= number);
    }
    return 0;
}
