#include <gtest/gtest.h>

#include "common/decimal.h"

#include <utility>

TEST(Decimal, IsClampedToThirtyTwoBits)
{
    const std::pair<std::string_view, int32_t> cases[] = {{"", 0},
                                                          {"x1", 0},
                                                          {"~1", 0},
                                                          {"12x", 12},
                                                          {" \t+7", 7},
                                                          {"-1", -1},
                                                          {"- 1", 0},
                                                          {"--1", 0},
                                                          {"2147483647", INT32_MAX},
                                                          {"2147483648", INT32_MAX},
                                                          {"99999999999999999999999999999999", INT32_MAX},
                                                          {"-2147483648", INT32_MIN},
                                                          {"-99999999999999999999999999999999", INT32_MIN}};
    for (const auto& [value, number] : cases)
        EXPECT_EQ(ReadDecimal(value), number) << value;
}
