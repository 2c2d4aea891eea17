// A short text that stands for a longer one: the same every time, and another one for another text as far as chance
// goes. Used where a file is to be recognised by what it was made of.
#pragma once

#include <cstdint>
#include <fmt/format.h>
#include <string>
#include <string_view>

namespace phnctl {

// 16 hexadecimal digits.
inline std::string Fingerprint(std::string_view text)
{
    std::uint64_t hash = 0xCBF29CE484222325; // FNV-1a
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    return fmt::format("{:016x}", hash);
}

} // namespace phnctl
