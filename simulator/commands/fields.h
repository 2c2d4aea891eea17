// Fields of a record, read and written one by one in the order in which they lie there, little-endian.
// Each field is named, and what was read or written is kept for whoever follows the exchange.
// A reader gives zeros beyond its end: the session has checked the record's length before.
#pragma once

#include "simulator/phone/phone.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

struct Field
{
    enum class Kind
    {
        Number,
        Time,
        Text,
        CutText, // longer than its field, which holds its beginning
    };
    std::string name;
    std::string value;
    Kind kind = Kind::Number;
};

using Fields = std::vector<Field>;

// One readable line: name=value, parted by spaces, texts in quotes.
std::string ToString(const Fields& fields);

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

    const Fields& Read() const { return fields_; }

private:
    std::uint32_t Number(std::size_t size);

    std::span<const std::uint8_t> bytes_;
    Fields fields_;
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
    void Append(const FieldWriter& other); // with its fields

    const std::vector<std::uint8_t>& Written() const { return bytes_; }
    const Fields& Named() const { return fields_; }

private:
    void Number(std::uint32_t value, std::size_t size);

    std::vector<std::uint8_t> bytes_;
    Fields fields_;
};

} // namespace simulator
