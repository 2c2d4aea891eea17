// What vCalendar 1.0 says otherwise than iCalendar: the lines of such a calendar as those of iCalendar. Used where the
// calendars of other programs are put together. Files are hostile: nothing is trusted, and nothing throws.
#pragma once

#include "phnctl/events/time.h"
#include "phnctl/text/content_line.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace phnctl {

// Takes a file's lines one after the other. Those of other versions come back as they are.
class VCalendarReader
{
public:
    // What a line is in iCalendar, in lines with its number.
    std::vector<ContentLine> Take(ContentLine line);

private:
    struct Alarm
    {
        ContentLine line;
        EventTime time;
    };

    std::vector<ContentLine> TakeMark(ContentLine line);
    std::vector<ContentLine> TakeProperty(ContentLine line);
    void TakeAlarm(const ContentLine& line);
    std::vector<ContentLine> Zone(std::size_t line) const;
    std::vector<ContentLine> Alarms() const;

    bool m_isVersion1 = false;
    bool m_isInEvent = false;
    std::string m_zone;                  // the offset of standard time
    std::vector<ContentLine> m_daylight; // when the clocks change; without any, times are those of the clock here
    bool m_isZoneDefined = false;
    std::optional<StatedTime> m_start; // of the event
    std::vector<Alarm> m_alarms;
};

// A recurrence rule of vCalendar 1.0 ("W1 MO WE #10", "MP1 2+ TU 20091231T000000") as that of iCalendar; one that
// iCalendar cannot say stays as it is.
std::string RuleOfVCalendar(const std::string& text);

} // namespace phnctl
