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

// The same for an unsigned field, which may also have been printed as a signed one: a negative number is its two's
// complement. One above 32 bits becomes the highest value: its low bits alone could name something else that exists.
uint32_t ReadUnsigned(std::string_view strValue);
