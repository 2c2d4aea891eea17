// Bytes as text: two hexadecimal digits each, in lower case.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace simulator {

inline std::string Hex(std::span<const std::uint8_t> bytes)
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes)
        text.append({kDigits[byte >> 4], kDigits[byte & 0xF]});
    return text;
}

} // namespace simulator
