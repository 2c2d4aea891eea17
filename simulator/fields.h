// Fields of a record, read and written one by one in the order in which they lie there, little-endian.
// Each field is named, and what was read or written adds up to one readable line for the trace.
// A reader gives zeros beyond its end: the session has checked the record's length before.
#pragma once

#include "simulator/phone.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

class FieldReader
{
public:
    explicit FieldReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::uint8_t U8(std::string_view name);
    std::uint16_t U16(std::string_view name);
    std::uint32_t U32(std::string_view name);
    // UTF-16 in a field of `units`, up to its first zero.
    std::string Text(std::string_view name, std::size_t units);
    // 8-bit text in a field of `size` bytes, each of them a Latin-1 character.
    std::string Characters(std::string_view name, std::size_t size);
    DateTime Time(std::string_view name);
    void Skip(std::size_t size);

    const std::string& Description() const { return description_; }

private:
    std::uint32_t Number(std::size_t size);

    std::span<const std::uint8_t> bytes_;
    std::string description_;
};

class FieldWriter
{
public:
    void U8(std::string_view name, std::uint8_t value);
    void U16(std::string_view name, std::uint16_t value);
    void U32(std::string_view name, std::uint32_t value);
    void I32(std::string_view name, std::int32_t value);
    // Zero-padded to its field, cut where it is longer; a text that fills the field has no terminator.
    void Text(std::string_view name, std::string_view text, std::size_t units);
    void Characters(std::string_view name, std::string_view text, std::size_t size);
    void Time(std::string_view name, const DateTime& time);
    void Zeros(std::size_t count);
    void Append(std::span<const std::uint8_t> bytes);

    const std::vector<std::uint8_t>& Written() const { return bytes_; }
    const std::string& Description() const { return description_; }

private:
    void Number(std::uint32_t value, std::size_t size);

    std::vector<std::uint8_t> bytes_;
    std::string description_;
};

} // namespace simulator
