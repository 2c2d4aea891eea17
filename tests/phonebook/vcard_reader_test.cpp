#include <gtest/gtest.h>

#include <chrono>
#include <tuple>

#include "phonebook/vcard_reader.h"

using namespace std::string_literals;
using namespace std::string_view_literals;

namespace {

TEST(VCardReader, FindsTheFirstLineThatBeginsWithTheKey)
{
    constexpr int kAbsent = -1;
    const std::tuple<EVCardKey, std::string_view, int> cases[] = {
        {eKeyEnd, "END:VCARD\r\n", 0},
        {eKeyEnd, "BEGIN\r\nend", 7}, // any case; no line end needed
        {eKeyEnd, "A\n \t END\n", 5},
        {eKeyEnd, "A\rENDING\r", 2},
        {eKeyEnd, "A\r\n\n\r\nEND\n", 6},
        {eKeyEnd, "A END\n", kAbsent}, // not inside a line
        {eKeyEnd, "A END", 2},         // but on a last line without a line end
        {eKeyEnd, "A\nxyEND", 4},
        {eKeyEnd, "A\nxyEND\n", kAbsent},
        {eKeyEnd, "EN", kAbsent},
        {eKeyEnd, "A\nEN", kAbsent},
        {eKeyEnd, "", kAbsent},
        {eKeyEnd, " \t ", kAbsent},
        {eKeyEnd, "A\n\0END\n"sv, kAbsent}, // a zero byte ends the text
        {eKeyEnd, "xEND\0\n"sv, 1},         // and so makes this its last line
        {eKeyFullName, "FN:A\nFN:B\n", 0},
        {eKeyFullName, "N:B\nFNX:A\nFN:B\n", 4},
        {eKeyFullName, "item1.FN:A\nFN:B\n", 11},
        {eKeyEMail, "X-PHN-EMAIL-2:b\nEMAIL:a\n", 16},
        {eKeyEMail2, "X-PHN-EMAIL-2:b\nEMAIL:a\n", 0},
        {eKeyCell, "TEL:1\nTEL;TYPE=HOME:2\nTel;Type=Cell,Voice:3\n", 22},
    };
    for (const auto& [key, text, position] : cases)
        EXPECT_EQ(static_cast<int>(CVCardText(text).FindProperty(key).value_or(static_cast<size_t>(kAbsent))), position)
            << text;
}

TEST(VCardReader, AValueRunsFromTheFirstColonToTheLineEnd)
{
    constexpr const char* kAbsent = nullptr;
    const std::tuple<EVCardKey, std::string_view, const char*> cases[] = {
        {eKeyFullName, "FN:Alpha\r\n", "Alpha"},
        {eKeyFullName, "fn: Alpha:Beta \n", " Alpha:Beta "},
        {eKeyFullName, "FN:\r\n", ""},
        {eKeyFullName, "FN:Alpha", kAbsent}, // no line end
        {eKeyFullName, "FN:", kAbsent},
        {eKeyFullName, "FN\r\n", kAbsent},
        {eKeyFullName, "FN:Alpha\0\r\n"sv, kAbsent},
        {eKeyFullName, "FN\r\nREV:N/A\r\n", "N/A"}, // the colon may stand on a later line
        {eKeyFullName, "x:1 FN:Alpha", kAbsent},
        {eKeyEMail, "EMAIL;TYPE=INTERNET:alpha\n", "alpha"},
        {eKeyGroupID, "X-PHN-GROUP-ID:123\nX-PHN-RINGER-ID:7\n", "123"},
        {eKeyRingerID, "X-PHN-GROUP-ID:123\nX-PHN-RINGER-ID:7\n", "7"},
    };
    for (const auto& [key, text, value] : cases) {
        std::string_view found;
        const bool present = CVCardText(text).GetVCardProperty(key, &found).has_value();
        ASSERT_EQ(present, value != kAbsent) << text;
        if (present) {
            EXPECT_EQ(found, value) << text;
        }
    }
}

TEST(VCardReader, NamesAreSplitAtTheFirstSpaceBetweenTwoParts)
{
    const std::tuple<std::string_view, std::string_view, std::string_view> cases[] = {
        {"", "", ""},
        {"Alpha", "Alpha", ""},
        {"Alpha Beta", "Alpha", "Beta"},
        {"Alpha Beta Gamma", "Alpha", "Beta Gamma"},
        {"Alpha  Beta", "Alpha", " Beta"},
        {"Alpha   ", "Alpha   ", ""},
        {"  Alpha", "  Alpha", ""},
        {"  Alpha Beta", "  Alpha", "Beta"},
        {"   ", "   ", ""},
    };
    for (const auto& [value, first, rest] : cases) {
        const SFullName name = SplitFullName(value);
        EXPECT_EQ(name.strFirst, first) << value;
        EXPECT_EQ(name.strRest, rest) << value;
    }
}

TEST(VCardReader, NumbersKeepOnlyWhatCanBeDialled)
{
    EXPECT_EQ(FilterNumber(u"(555) 123-4567 P 89"), u"5551234567p89");
    EXPECT_EQ(FilterNumber(u"+1.#*pwPW/x\u00E9\uFF11"), u"+1#*pwpw");
    EXPECT_EQ(FilterNumber(u"none"), u"");
}

TEST(VCardReader, SpeedDialListsAreDigitsAndCommas)
{
    const struct
    {
        std::string value;
        bool digits;
        size_t count = 0;
    } cases[] = {
        {"1,2,3,4,5", true, 5},   {"1,2,3,4", true, 4},  {"1,2,3,4,5,6", true, 6},
        {"7", true, 1},           {"1, 2,3,4,5", false}, {"1,,3,4,5", false},
        {"1,2,3,4,5,", false},    {",1,2,3,4", false},   {"-1,2,3,4,5", false},
        {"1,2,3,4,5,6,x", false}, {" ", false},          {",", false},
    };
    for (const auto& [value, digits, count] : cases) {
        std::array<uint32_t, kSpeedDialCount> numbers{};
        size_t found = 0;
        ASSERT_EQ(ReadSpeedDialList(value, &numbers, &found), digits) << value;
        if (digits) {
            EXPECT_EQ(found, count) << value;
        }
    }
    std::array<uint32_t, kSpeedDialCount> numbers{};
    size_t count = 0;
    ASSERT_TRUE(ReadSpeedDialList("3,0,2147483648,4294967295,4294967298", &numbers, &count));
    EXPECT_EQ(numbers, (std::array<uint32_t, 5>{3, 0, 0x80000000, UINT32_MAX, UINT32_MAX}));
}

// Each text is a card with a million bytes behind it that make the reader look as often as it can. The bound is a
// hundred times what a linear reader needs, and a hundredth of what one needs that looks for a line end each time.
TEST(VCardReader, TimeIsLinearInTheText)
{
    constexpr size_t kLength = 1 << 20;
    for (const std::string_view filler : {"a", "X", "X-PHN-", "\n", "x\n", " ", "E:", "\r \t"}) {
        std::string text = "BEGIN:VCARD\nFN:Alpha\n";
        while (text.size() < kLength)
            text += filler;
        const auto begin = std::chrono::steady_clock::now();
        const CVCardText card(text);
        std::string_view value;
        for (int key = 0; key < eKeyCount; ++key)
            card.GetVCardProperty(static_cast<EVCardKey>(key), &value);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1)) << filler;
        EXPECT_TRUE(card.GetVCardProperty(eKeyFullName, &value));
    }
}

} // namespace
