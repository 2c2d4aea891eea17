#include <gtest/gtest.h>

#include <tuple>

#include "phonebook/vcard_reader.h"

using namespace std::string_literals;
using namespace std::string_view_literals;

TEST(VCardReader, FindsTheFirstLineThatBeginsWithTheKey)
{
    constexpr int kAbsent = -1;
    const std::tuple<EVCardKey, std::string_view, int> cases[] = {
        {eKeyEnd, "BEGIN\r\nend", 7}, // any case; no line end needed
        {eKeyEnd, "A\n \t END\n", 5},
        {eKeyEnd, "A\rENDING\r", 2},
        {eKeyEnd, "A\r\n\n\r\nEND\n", 6},
        {eKeyEnd, "A END\n", kAbsent}, // not inside a line
        {eKeyEnd, "A END", 2},         // but on a last line without a line end
        {eKeyEnd, "A\nxyEND", 4},
        {eKeyEnd, "A\nxyEND\n", kAbsent},
        {eKeyEnd, "EN", kAbsent},
        {eKeyEnd, "", kAbsent},
        {eKeyEnd, "A\n\0END\n"sv, kAbsent}, // a zero byte ends the text
        {eKeyEnd, "xEND\0\n"sv, 1},         // and so makes this its last line
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

TEST(VCardReader, NamesAreSplitAtTheFirstSpaceBetweenTwoParts)
{
    const std::tuple<std::string_view, std::string_view, std::string_view> cases[] = {
        {"", "", ""},
        {"Alpha", "Alpha", ""},
        {"Alpha Beta Gamma", "Alpha", "Beta Gamma"},
        {"Alpha  Beta", "Alpha", " Beta"},
        {"Alpha   ", "Alpha   ", ""},
        {"  Alpha Beta", "  Alpha", "Beta"},
        {"   ", "   ", ""},
    };
    for (const auto& [value, first, rest] : cases) {
        const SFullName name = SplitFullName(value);
        EXPECT_EQ(name.strFirst, first) << value;
        EXPECT_EQ(name.strRest, rest) << value;
    }
}

TEST(VCardReader, SpeedDialListsAreDigitsAndCommas)
{
    std::array<uint32_t, kSpeedDialCount> numbers{};
    size_t count = 0;
    for (const char* list : {"1, 2,3,4,5", "1,,3,4,5", "1,2,3,4,5,", ",1,2,3,4", "-1,2,3,4,5", "1,2,3,4,5,6,x", " "})
        EXPECT_FALSE(ReadSpeedDialList(list, &numbers, &count)) << list;
    EXPECT_TRUE(ReadSpeedDialList("7", &numbers, &count));
    EXPECT_EQ(count, 1u);
    EXPECT_TRUE(ReadSpeedDialList("1,2,3,4,5,6", &numbers, &count));
    EXPECT_EQ(count, 6u);
    EXPECT_TRUE(ReadSpeedDialList("3,0,2147483648,4294967295,4294967298", &numbers, &count));
    EXPECT_EQ(count, 5u);
    EXPECT_EQ(numbers, (std::array<uint32_t, 5>{3, 0, 0x80000000, UINT32_MAX, UINT32_MAX}));
}
