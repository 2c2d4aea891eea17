#include <gtest/gtest.h>

#include <cstring>
#include <tuple>

#include "common/wide_field.h"

namespace {

// A field at an odd offset, between bytes that must stay.
struct Framed
{
    uint8_t before = 0xAA;
    WideField<4> field{};
    uint8_t after = 0xBB;
};

} // namespace

TEST(WideField, HoldsAsManyUnitsAsItHasAndNoMore)
{
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"", "", true}, {"abc", "abc", true}, {"abcd", "abcd", true}, {"abcde", "abcd", false}};
    for (const auto& [text, stored, whole] : cases) {
        Framed framed;
        std::memset(&framed.field, 0xEE, sizeof framed.field);
        EXPECT_EQ(framed.field.SetText(text), whole) << text;
        EXPECT_EQ(framed.field.GetText(), stored) << text;
        EXPECT_EQ(framed.before, 0xAA);
        EXPECT_EQ(framed.after, 0xBB);
        for (size_t unit = std::strlen(stored); unit < 4; ++unit)
            EXPECT_EQ(framed.field.m_abyUnits[2 * unit] | framed.field.m_abyUnits[2 * unit + 1], 0) << text;
    }
    const WideField<4> field{{0x41, 0x00, 0x00, 0x20, 0x00, 0x00, 0x42, 0x00}}; // a zero byte ends nothing
    EXPECT_EQ(field.GetWide(), u"A\u2000");
}
