// Records of the handset, built field by field in little-endian byte order, independently of the library's own records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

using Bytes = std::vector<uint8_t>;

inline void Put16(Bytes& bytes, uint16_t value)
{
    bytes.push_back(static_cast<uint8_t>(value));
    bytes.push_back(static_cast<uint8_t>(value >> 8));
}

inline void Put32(Bytes& bytes, uint32_t value)
{
    Put16(bytes, static_cast<uint16_t>(value));
    Put16(bytes, static_cast<uint16_t>(value >> 16));
}

// As many units as the text has, then zeros up to the width.
inline void PutWide(Bytes& bytes, std::u16string_view text, size_t units)
{
    for (size_t unit = 0; unit < units; ++unit)
        Put16(bytes, unit < text.size() ? text[unit] : uint16_t{0});
}

inline void Append(Bytes& bytes, const Bytes& more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}
