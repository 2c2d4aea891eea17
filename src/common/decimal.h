// Decimal numbers in hosts' texts.
#pragma once

#include <cstdint>
#include <string_view>

constexpr bool IsDigit(char ch)
{
    return ch >= '0' && ch <= '9';
}

// The leading decimal integer, with blanks and a sign before it; 0 if there is none. Clamped to 32 bits.
int32_t ReadDecimal(std::string_view strValue);
