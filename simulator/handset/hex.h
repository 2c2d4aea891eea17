// Bytes as text: two hexadecimal digits each.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace simulator {

inline std::string ToHex(std::span<const std::uint8_t> bytes)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const std::uint8_t byte : bytes)
        text.append({kDigits[byte >> 4], kDigits[byte & 0xF]});
    return text;
}

} // namespace simulator
