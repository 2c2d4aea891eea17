#include <gtest/gtest.h>

#include "common/decimal.h"

#include <string>
#include <utility>
#include <vector>

TEST(Decimal, IsClampedToThirtyTwoBits)
{
    const std::string many(32, '9');
    const std::pair<int32_t, std::vector<std::string>> cases[] = {
        {0, {"", "x1", "~1", "- 1", "--1"}},
        {12, {"12x"}},
        {7, {" \t+7"}},
        {-1, {"-1"}},
        {INT32_MAX, {"2147483647", "2147483648", many}},
        {INT32_MIN, {"-2147483648", "-" + many}},
    };
    for (const auto& [number, values] : cases)
        for (const std::string& value : values)
            EXPECT_EQ(ReadDecimal(value), number) << value;
}
