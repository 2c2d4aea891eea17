// The property reader and its oddities, and the pure steps behind it.
#include <chrono>
#include <optional>
#include <tuple>

#include "calendar/event_text.h"
#include "calendar/icalendar_reader.h"

namespace {

constexpr std::nullopt_t kNone = std::nullopt;

TEST(ICalendarReader, APropertyIsItsFirstLineOrNothing)
{
    const std::tuple<const char*, char, std::optional<std::string_view>> cases[] = {
        {"UID:{1}\r\nUID:{2}\r\n", ':', "{1}"},
        {"A:1\n \t uid : a:b \nB:1", ':', " a:b "}, // any case, after blanks, in any case the whole line
        {"A:1\rUID:\rB", ':', ""},
        {"X-UID:1\n", ':', kNone},
        {"UIDX:1\nUID:2\n", ':', kNone}, // the first line decides
        {"UID-X:1\nUID:2\n", ':', "1"},
        {"UID\nA:1\n", ':', "1"}, // the delimiter may stand on a later line
        {"UID;A=1:2\n", ':', "2"},
        {"UID;A=1:2\n", ';', "A=1:2"},
        {"UID:1\nRRULE:FREQ=DAILY;COUNT=5\n", ';', "COUNT=5"},
        {"UID:1", ';', kNone},
        {"UID:1", ':', "1"},
        {"UID:1;2:3", ':', "1"}, // without a line end it ends at a delimiter
        {"UID:1=2", ':', "1"},
        {"UID:1,2", ':', "1"},
        {"UID", ':', kNone},
        {"UID:1234567890\n", ':', "1234567890"},
        {"UID:12345678901\n", ':', kNone}, // too long
        {"", ':', kNone},
    };
    for (const auto& [text, delimiter, value] : cases)
        EXPECT_EQ(CiCalText(text).GetiCalProperty(eKeyUID, delimiter, 10), value) << text;
    EXPECT_EQ(CiCalText("UID:" + std::string(259, 'a') + "\n").GetiCalProperty(eKeyUID, ':'), std::string(259, 'a'));
    EXPECT_EQ(CiCalText("UID:" + std::string(260, 'a') + "\n").GetiCalProperty(eKeyUID, ':'), std::nullopt);
}

TEST(ICalendarReader, ATriggersMinutesStandBetweenThePAndTheLastM)
{
    const std::tuple<const char*, std::optional<std::string_view>> cases[] = {
        {"-P15M", "15"},  {"-PT15M", "T15"}, {"x-1P2M3M4", "2M3"}, {"-PM", ""},     {"P15M", kNone},
        {"P-15M", kNone}, {"-15M", kNone},   {"M-P15", kNone},     {"-P15", kNone}, {"", kNone},
    };
    for (const auto& [trigger, minutes] : cases)
        EXPECT_EQ(GetTriggerMinutes(trigger), minutes) << trigger;
}

// A million bytes that make the reader look as often as it can. The bound is a hundred times what a linear one needs.
TEST(ICalendarReader, TimeIsLinearInTheText)
{
    const std::string tail = EventAt("");
    for (const std::string filler : {"a", "D", "DTSTART", "DTEND\n", "\n", " ", "BEGIN:", "BEGIN:VEVEN", "x;=:,\r"}) {
        for (const bool isOuter : {false, true}) {
            std::string noise;
            while (noise.size() < 1 << 20)
                noise += filler;
            const std::string text = isOuter ? noise + "\n" + tail : EventAt("X:" + noise);
            const auto begin = std::chrono::steady_clock::now();
            Read(text);
            EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1)) << filler;
        }
    }
}

} // namespace
