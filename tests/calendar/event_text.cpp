#include "calendar/event_text.h"

#include <gtest/gtest.h>

#include <cstdio>

std::string Event(const std::string& lines)
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\n" + lines + "END:VEVENT\r\nEND:VCALENDAR\r\n";
}

std::string EventAt(const std::string& lines, const std::string& day)
{
    return Event("DESCRIPTION:d\r\nDTSTART:" + day + "T120000\r\nDTEND:" + day + "T130000\r\n" + lines);
}

bool Read(const std::string& text, CAL_EVENT_INFO* record)
{
    CCalendarEx calendar;
    ICAL_PROPERTIES properties;
    *record = {};
    return calendar.iCalendarToNorvik(record, &properties, text.data(), static_cast<DWORD>(text.size()));
}

CAL_EVENT_INFO Read(const std::string& text)
{
    CAL_EVENT_INFO record;
    EXPECT_TRUE(Read(text, &record)) << text;
    return record;
}

std::string Write(const CAL_EVENT_INFO& record)
{
    std::string text;
    return CCalendarEx().NorvikToiCalendar(&text, &record) ? text : std::string();
}

std::string Line(const std::string& text, const std::string& begin)
{
    const size_t position = text.find("\r\n" + begin);
    return position == std::string::npos ? std::string()
                                         : text.substr(position + 2, text.find("\r\n", position + 2) - position - 2);
}

std::string Show(const DEV_DATE_TIME& date)
{
    char text[40];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", date.wYear, date.byMonth, date.byDay, date.byHour,
                  date.byMinute, date.wSecond);
    return text;
}
