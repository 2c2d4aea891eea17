// Texts and records of events for the tests of the iCalendar conversion.
#pragma once

#include <cstdio>
#include <gtest/gtest.h>
#include <string>

#include "calendar/calendar_ex.h"

// A VCALENDAR with one VEVENT of these lines.
inline std::string Event(const std::string& lines)
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\n" + lines + "END:VEVENT\r\nEND:VCALENDAR\r\n";
}

// The same with a description, a start and an end an hour later, 20090310T120000 (a Tuesday) unless told otherwise.
inline std::string EventAt(const std::string& lines, const std::string& day = "20090310")
{
    return Event("DESCRIPTION:d\r\nDTSTART:" + day + "T120000\r\nDTEND:" + day + "T130000\r\n" + lines);
}

// Does the calendar take the text? The record is what it made of it.
inline bool Read(const std::string& text, CAL_EVENT_INFO* record)
{
    CCalendarEx calendar;
    ICAL_PROPERTIES properties;
    *record = {};
    return calendar.iCalendarToNorvik(record, &properties, text.data(), static_cast<DWORD>(text.size()));
}

// The record of a text that must be taken.
inline CAL_EVENT_INFO Read(const std::string& text)
{
    CAL_EVENT_INFO record;
    EXPECT_TRUE(Read(text, &record)) << text;
    return record;
}

// The text of a record; empty if it has none.
inline std::string Write(const CAL_EVENT_INFO& record)
{
    std::string text;
    return CCalendarEx().NorvikToiCalendar(&text, &record) ? text : std::string();
}

// The line of a text that begins so, without its end; empty if there is none.
inline std::string Line(const std::string& text, const std::string& begin)
{
    const size_t position = text.find("\r\n" + begin);
    return position == std::string::npos ? std::string()
                                         : text.substr(position + 2, text.find("\r\n", position + 2) - position - 2);
}

// "2009-03-15 12:00:00".
inline std::string Show(const DEV_DATE_TIME& date)
{
    char text[40];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", date.wYear, date.byMonth, date.byDay, date.byHour,
                  date.byMinute, date.wSecond);
    return text;
}

constexpr DEV_DATE_TIME At(uint16_t year, uint8_t month, uint8_t day, uint8_t hour = 0, uint8_t minute = 0,
                           uint16_t second = 0)
{
    return {hour, minute, second, day, month, year};
}
