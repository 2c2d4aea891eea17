// Events through the exports, against a simulated handset: what a host reads it can write, and reads again.
#include <algorithm>
#include <set>

#include "api/handset_fixture.h"

namespace {

class EventExports : public HandsetTest
{
protected:
    static constexpr uint32_t kFree = 99; // an index without an event

    EventExports() { StartService(); }

    PHN_ERROR Set(uint32_t index, std::string text)
    {
        PHN_EVENT_RECORD record{sizeof record, text.data(), static_cast<uint32_t>(text.size())};
        return CALL(PHN_SetEvent)(index, &record);
    }

    PHN_ERROR Get(uint32_t index, std::string* text, uint32_t room = 4096)
    {
        text->assign(room, '#');
        PHN_EVENT_RECORD record{sizeof record, text->data(), room};
        const PHN_ERROR error = CALL(PHN_GetEvent)(index, &record);
        text->resize(text->find('\0'));
        return error;
    }
};

TEST_F(EventExports, EveryShippedEventIsReadAndWrittenBack)
{
    const auto events = bench_.Handset().Snapshot().events;
    std::set<uint32_t> zones, types, triggers;
    for (const auto& [index, event] : events) {
        std::string text;
        ASSERT_EQ(Get(index, &text), PHN_ERROR_NONE) << index;
        EXPECT_NE(text.find("\r\nUID:{" + event.uid + "}\r\nDESCRIPTION:" + event.description + "\r\n"),
                  std::string::npos)
            << text;
        zones.insert(event.zone);
        types.insert(event.repeatType);
        const size_t trigger = text.find("\r\nTRIGGER:-P");
        EXPECT_EQ(trigger != std::string::npos, event.alarm == 1);
        if (event.alarm == 1)
            triggers.insert(static_cast<uint32_t>(std::stoul(text.substr(trigger + 12))));

        // A rule without a frequency is written but not taken; what is not in the text reads as an interval of 1.
        const size_t rule = text.find("\r\nRRULE:INTERVAL=1\r\n");
        if (rule != std::string::npos) {
            EXPECT_EQ(Set(kFree, text), PHN_ERROR_INVALID_PARAMETER);
            text.erase(rule + 2, sizeof "RRULE:INTERVAL=1" - 1);
        }
        ASSERT_EQ(Set(kFree, text), PHN_ERROR_NONE) << text;
        auto expected = event;
        expected.interval = std::max(event.interval, 1u);
        if (event.repeatType == 3) { // every weekday is a weekly rule with a list
            expected.repeatType = 2;
            std::fill_n(expected.byDay.begin(), 5, uint8_t{255});
        }
        const auto stored = bench_.Handset().Snapshot().events.at(kFree);
        EXPECT_EQ(stored.uid, expected.uid);
        EXPECT_EQ(stored.description, expected.description);
        EXPECT_EQ(stored.zone, expected.zone);
        EXPECT_EQ(stored.repeatType, expected.repeatType);
        EXPECT_EQ(stored.repeatCount, expected.repeatCount);
        EXPECT_EQ(stored.interval, expected.interval);
        EXPECT_EQ(stored.byDay, expected.byDay);
        EXPECT_EQ(stored.byDayFromEnd, expected.byDayFromEnd);
        EXPECT_EQ(stored.byMonth, expected.byMonth);
        EXPECT_EQ(stored.byMonthDay, expected.byMonthDay);
        EXPECT_EQ(stored.byMonthDayFromEnd, expected.byMonthDayFromEnd);
        EXPECT_EQ(stored.alarm, expected.alarm);
        std::string again;
        ASSERT_EQ(Get(kFree, &again), PHN_ERROR_NONE);
        if (event.repeatType != 3) {
            EXPECT_EQ(again, rule == std::string::npos
                                 ? text
                                 : text.substr(0, rule + 2) + "RRULE:INTERVAL=1" + text.substr(rule + 2));
        }
    }
    EXPECT_EQ(zones.size(), 14u);
    EXPECT_EQ(types, (std::set<uint32_t>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(triggers, (std::set<uint32_t>{0, 5, 10, 15, 60, 120, 1440, 2880}));
}

TEST_F(EventExports, AnEventIsWrittenReplacedAndDeleted)
{
    const std::string event =
        "BEGIN:VCALENDAR\nVERSION:2.0\nBEGIN:VEVENT\nDESCRIPTION:Tea\nDTSTART;TZID=PST:20090315T120000\n"
        "DTEND;TZID=PST:20090315T130000\nRRULE:FREQ=DAILY;COUNT=5\nEND:VEVENT\nEND:VCALENDAR\n";
    ASSERT_EQ(CALL(PHN_DeleteAllEvents)(), PHN_ERROR_NONE);
    EXPECT_TRUE(bench_.Handset().Snapshot().events.empty());
    std::string text;
    EXPECT_EQ(Get(3, &text), PHN_ERROR_NOT_FOUND);
    EXPECT_EQ(text, "");
    ASSERT_EQ(Set(3, event), PHN_ERROR_NONE);
    ASSERT_EQ(Get(3, &text), PHN_ERROR_NONE);
    EXPECT_NE(text.find("\r\nDTSTART;TZID=PST:20090315T120000\r\n"), std::string::npos) << text;

    const auto length = static_cast<uint32_t>(text.size());
    std::string small;
    EXPECT_EQ(Get(3, &small, length + 1), PHN_ERROR_NONE);
    EXPECT_EQ(small, text);
    small.assign(length, '#');
    PHN_EVENT_RECORD record{sizeof record, small.data(), length};
    EXPECT_EQ(CALL(PHN_GetEvent)(3, &record), PHN_ERROR_BUFFER_TOO_SMALL);
    EXPECT_EQ(+record.uSizeofData, length);
    EXPECT_EQ(small, std::string(length, '\0'));

    const auto writes = bench_.Handset().Requests(31);
    EXPECT_EQ(Set(3, "no event"), PHN_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(bench_.Handset().Requests(31), writes);
    EXPECT_EQ(Set(100000, event), PHN_ERROR_INVALID_PARAMETER); // refused by the handset
    EXPECT_EQ(bench_.Handset().Requests(31), writes + 1);

    EXPECT_EQ(CALL(PHN_DeleteEvent)(3), PHN_ERROR_NONE);
    EXPECT_EQ(CALL(PHN_DeleteEvent)(3), PHN_ERROR_NOT_FOUND);
    bench_.TakeLog();
    bench_.Handset().AddFault("status=7@33*1");
    EXPECT_EQ(CALL(PHN_DeleteAllEvents)(), 102u);
    EXPECT_EQ(bench_.TakeLog().back(), "CCalderApp\tError\tPHN_DeleteAllEvents - "
                                       "pInstance->m_pCalendarObject->DeleteAllEvent returned false with weError = "
                                       "102(0x66).");
}

} // namespace
