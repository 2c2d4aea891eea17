// Reads a number that a person typed: decimal, or hexadecimal with 0x. Used wherever an argument is a number.
#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace phnctl {

// Nothing when the text is no number, has anything behind it, or exceeds `largest`.
inline std::optional<std::uint64_t> ParseNumber(std::string_view text, std::uint64_t largest)
{
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (hexadecimal)
        text.remove_prefix(2);
    std::uint64_t number = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number, hexadecimal ? 16 : 10);
    if (result.ec != std::errc() || result.ptr != end || number > largest)
        return std::nullopt;
    return number;
}

} // namespace phnctl
