#include "simulator/commands/fields.h"

#include "simulator/phone/date_time.h"
#include "simulator/phone/utf.h"

#include <algorithm>
#include <utility>

namespace simulator {
namespace {

void Add(Fields& fields, std::string_view name, std::string value, Field::Kind kind = Field::Kind::Number)
{
    fields.push_back({std::string(name), std::move(value), kind});
}

std::string Quoted(std::string_view text)
{
    std::string quoted = "\"";
    for (const char c : text)
        quoted.push_back(static_cast<std::uint8_t>(c) < 0x20 ? '.' : c);
    return quoted + "\"";
}

} // namespace

std::string ToString(const Fields& fields)
{
    std::string line;
    for (const Field& field : fields) {
        const bool isText = field.kind == Field::Kind::Text || field.kind == Field::Kind::CutText;
        line.append(line.empty() ? "" : " ").append(field.name).append("=");
        line.append(isText ? Quoted(field.value) : field.value);
        line.append(field.kind == Field::Kind::CutText ? " (cut)" : "");
    }
    return line;
}

std::uint32_t FieldReader::Number(std::size_t size)
{
    std::uint32_t value = 0;
    const std::size_t present = std::min(size, bytes_.size());
    for (std::size_t i = 0; i < present; ++i)
        value |= static_cast<std::uint32_t>(bytes_[i]) << 8 * i;
    bytes_ = bytes_.subspan(present);
    return value;
}

std::uint8_t FieldReader::U8(std::string_view name)
{
    const auto value = static_cast<std::uint8_t>(Number(1));
    Add(fields_, name, std::to_string(value));
    return value;
}

std::uint16_t FieldReader::U16(std::string_view name)
{
    const auto value = static_cast<std::uint16_t>(Number(2));
    Add(fields_, name, std::to_string(value));
    return value;
}

std::uint32_t FieldReader::U32(std::string_view name)
{
    const std::uint32_t value = Number(4);
    Add(fields_, name, std::to_string(value));
    return value;
}

std::string FieldReader::Text(std::string_view name, std::size_t units)
{
    std::u16string text(std::min(units, bytes_.size() / 2), u'\0');
    for (std::size_t i = 0; i < text.size(); ++i)
        text[i] = static_cast<char16_t>(bytes_[2 * i] | bytes_[2 * i + 1] << 8);
    Skip(2 * units);
    text.resize(std::min(text.find(u'\0'), text.size()));
    std::string value = ToUtf8(text);
    Add(fields_, name, value, Field::Kind::Text);
    return value;
}

std::string FieldReader::Characters(std::string_view name, std::size_t size)
{
    const std::size_t present = std::min(size, bytes_.size());
    std::string value = ToUtf8(std::u16string(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(present)));
    Skip(size);
    Add(fields_, name, value, Field::Kind::Text);
    return value;
}

DateTime FieldReader::Time(std::string_view name)
{
    DateTime time;
    time.hour = static_cast<std::uint8_t>(Number(1));
    time.minute = static_cast<std::uint8_t>(Number(1));
    time.second = static_cast<std::uint16_t>(Number(2));
    time.day = static_cast<std::uint8_t>(Number(1));
    time.month = static_cast<std::uint8_t>(Number(1));
    time.year = static_cast<std::uint16_t>(Number(2));
    Add(fields_, name, ToString(time), Field::Kind::Time);
    return time;
}

void FieldReader::Skip(std::size_t size)
{
    bytes_ = bytes_.subspan(std::min(size, bytes_.size()));
}

void FieldWriter::Number(std::uint32_t value, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i)
        bytes_.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

void FieldWriter::U8(std::string_view name, std::uint8_t value)
{
    Number(value, 1);
    Add(fields_, name, std::to_string(value));
}

void FieldWriter::U16(std::string_view name, std::uint16_t value)
{
    Number(value, 2);
    Add(fields_, name, std::to_string(value));
}

void FieldWriter::U32(std::string_view name, std::uint32_t value)
{
    Number(value, 4);
    Add(fields_, name, std::to_string(value));
}

void FieldWriter::I32(std::string_view name, std::int32_t value)
{
    Number(static_cast<std::uint32_t>(value), 4);
    Add(fields_, name, std::to_string(value));
}

void FieldWriter::Text(std::string_view name, std::string_view text, std::size_t units)
{
    std::u16string field = ToUtf16(text);
    Add(fields_, name, std::string(text), field.size() > units ? Field::Kind::CutText : Field::Kind::Text);
    field.resize(units);
    for (const char16_t unit : field)
        Number(unit, 2);
}

void FieldWriter::Characters(std::string_view name, std::string_view text, std::size_t size)
{
    std::u16string field = ToUtf16(text);
    Add(fields_, name, std::string(text), field.size() > size ? Field::Kind::CutText : Field::Kind::Text);
    field.resize(size);
    for (const char16_t unit : field)
        Number(unit < 0x100 ? unit : '?', 1);
}

void FieldWriter::Time(std::string_view name, const DateTime& time)
{
    Number(time.hour, 1);
    Number(time.minute, 1);
    Number(time.second, 2);
    Number(time.day, 1);
    Number(time.month, 1);
    Number(time.year, 2);
    Add(fields_, name, ToString(time), Field::Kind::Time);
}

void FieldWriter::Zeros(std::size_t count)
{
    bytes_.resize(bytes_.size() + count);
}

void FieldWriter::Append(std::span<const std::uint8_t> bytes)
{
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

void FieldWriter::Append(const FieldWriter& other)
{
    Append(other.bytes_);
    fields_.insert(fields_.end(), other.fields_.begin(), other.fields_.end());
}

} // namespace simulator
