// The calendar's operations on a port in memory: what they send, and what they make of replies.
#include "calendar/event_text.h"
#include "link/service_fixture.h"

#include <tuple>

namespace {

class CalendarTest : public ServiceTest
{
protected:
    CalendarTest() : ServiceTest("CCalendar") {}

    PHN_ERROR Get(uint32_t room)
    {
        std::string buffer(room, '\0');
        PHN_EVENT_RECORD record{0, buffer.data(), room};
        const PHN_ERROR error = Run(calendar_, &CCalendar::GetEvent, 7, &record);
        const bool done = error == PHN_ERROR_NONE;
        EXPECT_EQ(+record.uSize, done ? sizeof record : 0);
        EXPECT_EQ(done, buffer[0] != '\0') << "a failure writes nothing";
        text_ = buffer.c_str();
        size_ = record.uSizeofData;
        return error;
    }
    PHN_ERROR Set(std::string text)
    {
        PHN_EVENT_RECORD record{0, text.data(), static_cast<uint32_t>(text.size())};
        const PHN_ERROR error = Run(calendar_, &CCalendar::SetEvent, 0x01020304, &record);
        EXPECT_EQ(+record.uSize, error == PHN_ERROR_NONE ? sizeof record : 0);
        return error;
    }
    PHN_ERROR Delete() { return Run(calendar_, &CCalendar::DeleteEvent, 7); }
    PHN_ERROR DeleteAll() { return Run(calendar_, &CCalendar::DeleteAllEvents); }

    CCalendarEx calendar_;
    std::string text_;  // that the last Get brought
    uint32_t size_ = 0; // that it said
};

void PutDate(Bytes& bytes, const DEV_DATE_TIME& date)
{
    bytes.insert(bytes.end(), {date.byHour, date.byMinute});
    Put16(bytes, date.wSecond);
    bytes.insert(bytes.end(), {date.byDay, date.byMonth});
    Put16(bytes, date.wYear);
}

// The record of a monthly event on Friday, 27 March 2009.
Bytes FridayEvent()
{
    Bytes bytes;
    PutDate(bytes, At(2009, 3, 27, 17, 1, 2));
    PutDate(bytes, At(2009, 3, 27, 19));
    PutDate(bytes, At(2009, 1, 5, 8));
    PutDate(bytes, At(2009, 1, 6, 9, 30));
    PutDate(bytes, At(2009, 3, 27, 16, 56, 2));
    PutDate(bytes, At(2010, 12, 31, 23, 59, 58));
    for (const uint32_t number : {8u, 4u, 77u, 0u, 0u, 0u}) // PST, monthly, ringer
        Put32(bytes, number);
    Put16(bytes, 1); // valid
    Put16(bytes, 1); // has an alarm
    PutWide(bytes, u"Drinks", 80);
    PutWide(bytes, u"id-1", 40);
    Put32(bytes, 2);
    bytes.insert(bytes.end(), {0, 0, 255, 0, 0, 0, 3, 0});
    bytes.insert(bytes.end(), {0, 0, 0, 0, 1, 0, 0, 0});
    bytes.insert(bytes.end(), 16, 0);
    for (const uint32_t number : {0x804u, 0u, 0x04000001u, 0x1u})
        Put32(bytes, number);
    return bytes;
}

constexpr const char* kFridayText =
    "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nCREATED:20090105T080000Z\r\nLAST-MODIFIED:20090106T093000Z\r\n"
    "UID:{id-1}\r\nDESCRIPTION:Drinks\r\nDTSTART;TZID=PST:20090327T170102\r\nDTEND;TZID=PST:20090327T190000\r\n"
    "RRULE:FREQ=MONTHLY;UNTIL=20101231T235958Z;INTERVAL=2;BYDAY=WE,-1FR,3SU;BYMONTH=3,12;BYMONTHDAY=1,27,-1\r\n"
    "BEGIN:VALARM\r\nTRIGGER:-P5M\r\nACTION;X-PHN-RINGER-ID:77\r\nEND:VALARM\r\n\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";

TEST_F(CalendarTest, RequestsAndRepliesHoldTheRecordFieldByField)
{
    ASSERT_EQ(FridayEvent().size(), 368u);
    Answer({0, 1}, FridayEvent());
    EXPECT_EQ(Get(4096), PHN_ERROR_NONE);
    EXPECT_EQ(text_, kFridayText);
    EXPECT_EQ(TakeRequest(), Request(30, {7}));

    Answer({0});
    EXPECT_EQ(Set(kFridayText), PHN_ERROR_NONE);
    EXPECT_EQ(TakeRequest(), Request(31, {0x01020304}, FridayEvent()));
    Answer({0});
    EXPECT_EQ(Delete(), PHN_ERROR_NONE);
    EXPECT_EQ(TakeRequest(), Request(32, {7}));
    Answer({0});
    EXPECT_EQ(DeleteAll(), PHN_ERROR_NONE);
    EXPECT_EQ(TakeRequest(), Request(33));
    EXPECT_EQ(port_->lastTimeout, 15000u);
    EXPECT_EQ(port_->lastSize, 8193u);
}

TEST_F(CalendarTest, EachCheckOfAReplyHasItsLineAndItsCode)
{
    ExpectChecks({"GetEvent", "GetEvent", [this] { return Get(4096); }, 16, "CAL_RET_EVENT_CNT_RES",
                  "prcCalRetEvent->dwResult"});
    const auto check = [this](const std::string& name, const std::string& result, auto run) {
        ExpectChecks({name, name, run, 12, "CAL_RET_RES", result, "rcCalRetRes.wStatus"});
    };
    check("SetEvent", "rcCalRetRes.dwResult", [this] { return Set(kFridayText); });
    check("DeleteEvent", "rcCalRetRes.dwResult", [this] { return Delete(); });
    check("DeleteAllEvents", "", [this] { return DeleteAll(); });
}

TEST_F(CalendarTest, ATooSmallBufferLearnsTheLength)
{
    const auto length = static_cast<uint32_t>(std::string(kFridayText).size());
    Answer({0, 1}, FridayEvent());
    EXPECT_EQ(Get(length + 1), PHN_ERROR_NONE);
    EXPECT_EQ(size_, length + 1);
    for (const uint32_t room : {length, 1u}) {
        log_.TakeLines();
        Answer({0, 1}, FridayEvent());
        EXPECT_EQ(Get(room), PHN_ERROR_BUFFER_TOO_SMALL);
        EXPECT_EQ(size_, length);
        char line[200];
        std::snprintf(line, sizeof line,
                      "CCalendar Error GetEvent - strCalendar.GetLength()(%u, 0x%X) is greater than or equal "
                      "pRecord->uSizeofData(%u, 0x%X).",
                      length, length, room, room);
        EXPECT_EQ(log_.TakeLines().back(), line);
    }
}

TEST_F(CalendarTest, NothingIsTakenOnAHostileReplysWord)
{
    Bytes two = FridayEvent();
    Append(two, Bytes(368, 0xFF)); // the second is not looked at
    Bytes zone = FridayEvent();
    zone[48] = 14;
    const Bytes whole = FridayEvent();
    const Bytes cut(whole.begin(), whole.end() - 14); // the frame's 13 trailing bytes do not make up for it
    const std::tuple<uint32_t, Bytes, PHN_ERROR, const char*> cases[] = {
        {2, two, 0, "Comment GetEvent being executed."},
        {0xFFFFFFFF, whole, 0, "Comment GetEvent being executed."},
        {0, whole, 304, "Error GetEvent - prcCalRetEvent->dwNumOfEventInfo = 0(0x0)."},
        {1, {}, 104, "Error GetEvent - The first of 1(0x1) events is not whole."},
        {1, cut, 104, "Error GetEvent - The first of 1(0x1) events is not whole."},
        {1, zone, 104, "Error GetEvent - NorvikToiCalendar returned false."},
    };
    for (const auto& [count, events, error, line] : cases) {
        Answer({0, count}, events);
        EXPECT_EQ(Get(4096), error) << line;
        EXPECT_EQ(text_, error ? "" : kFridayText);
        EXPECT_EQ(log_.TakeLines().back(), "CCalendar " + std::string(line));
    }
}

TEST_F(CalendarTest, RejectedTextCausesNoExchange)
{
    for (const std::string& text : {std::string("x"), std::string(), EventAt("", "19801231")}) {
        EXPECT_EQ(Set(text), PHN_ERROR_INVALID_PARAMETER);
        EXPECT_EQ(log_.TakeLines().back(), "CCalendar Error SetEvent - iCalendarToNorvik returned false.");
    }
    EXPECT_TRUE(port_->requests.empty());
}

// A calendar that is short of one piece of memory.
class ShortCalendar : public CCalendarEx
{
public:
    CAL_PARAM* AllocParam(DWORD* size) override { return missing == 0 ? nullptr : CCalendarEx::AllocParam(size); }
    ICAL_PROPERTIES* AllocProperties(DWORD* size) override
    {
        return missing == 1 ? nullptr : CCalendarEx::AllocProperties(size);
    }
    CAL_RET_EVENT* AllocRetEvent(DWORD* size) override
    {
        return missing == 2 ? nullptr : CCalendarEx::AllocRetEvent(size);
    }
    CAL_EVENT_INFO* AllocEvents(DWORD count, DWORD* size) override
    {
        return missing == 3 ? nullptr : CCalendarEx::AllocEvents(count, size);
    }

    int missing = 0;
};

TEST_F(CalendarTest, MissingMemoryIsAFailure)
{
    ShortCalendar calendar;
    std::string text = kFridayText;
    PHN_EVENT_RECORD record{0, text.data(), static_cast<uint32_t>(text.size())};
    for (const char* line :
         {"SetEvent - prcCalParam is NULL.", "SetEvent - piCalProp is NULL.", "GetEvent - prcCalRetEvent is NULL.",
          "GetEvent - prcCalRetEvent->prcEventInfo is NULL."}) {
        if (*line == 'G')
            Answer({0, 1}, FridayEvent());
        EXPECT_EQ(Run(calendar, *line == 'G' ? &CCalendar::GetEvent : &CCalendar::SetEvent, 7, &record),
                  PHN_ERROR_FAILED);
        EXPECT_EQ(log_.TakeLines().back(), "CCalendar Error " + std::string(line));
        ++calendar.missing;
    }
}

} // namespace
