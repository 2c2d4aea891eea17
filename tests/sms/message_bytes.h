// Message records and PDUs, built independently of the library: records byte by byte, PDUs from texts of binary digits.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "wire/record_bytes.h"

struct Record
{
    uint32_t index = 0;
    uint32_t replyOption = 0;
    uint16_t year = 0;
    uint8_t month = 0;
    uint8_t day = 0;
    uint8_t hour = 0;
    uint8_t minute = 0;
    uint16_t second = 0;
    std::u16string address{};
    std::u16string callback{};
    uint32_t priority = 0;
    // What follows the fixed part, terminator included.
    std::u16string body{};
};

// The fixed part and the body.
inline Bytes ToBytes(const Record& record)
{
    Bytes bytes;
    Put32(bytes, record.index);
    Put32(bytes, 0xEEEEEEEE); // the handset's own
    Put32(bytes, record.replyOption);
    bytes.insert(bytes.end(), {record.hour, record.minute});
    Put16(bytes, record.second);
    bytes.insert(bytes.end(), {record.day, record.month});
    Put16(bytes, record.year);
    PutWide(bytes, record.address, 36);
    PutWide(bytes, record.callback, 36);
    Put32(bytes, record.priority);
    Put32(bytes, static_cast<uint32_t>(2 * record.body.size()));
    PutWide(bytes, record.body, record.body.size());
    return bytes;
}

// `value` as `count` binary digits.
inline std::string Bits(unsigned value, unsigned count)
{
    std::string bits;
    for (unsigned bit = count; bit-- > 0;)
        bits += value >> bit & 1 ? '1' : '0';
    return bits;
}

// Each character of the text as its `count` low bits.
inline std::string Characters(const std::string& text, unsigned count)
{
    std::string bits;
    for (const char character : text)
        bits += Bits(static_cast<uint8_t>(character), count);
    return bits;
}

// Identifier, length, and the bits as `length` bytes, filled up with zeros.
inline Bytes Item(uint8_t id, const std::string& bits, size_t length)
{
    std::string padded = bits;
    if (bits.size() > 8 * length || length > 255)
        throw std::logic_error("the bits do not fit");
    padded.resize(8 * length, '0');
    Bytes item{id, static_cast<uint8_t>(length)};
    for (size_t byte = 0; byte < length; ++byte)
        item.push_back(static_cast<uint8_t>(std::stoul(padded.substr(8 * byte, 8), nullptr, 2)));
    return item;
}

// The same with just as many bytes as the bits need.
inline Bytes Item(uint8_t id, const std::string& bits)
{
    return Item(id, bits, (bits.size() + 7) / 8);
}

inline Bytes Join(const std::vector<Bytes>& parts)
{
    Bytes joined;
    for (const Bytes& part : parts)
        Append(joined, part);
    return joined;
}

// The items one after the other, as the data of one more.
inline Bytes Group(uint8_t id, const std::vector<Bytes>& items)
{
    const Bytes data = Join(items);
    if (data.size() > 255)
        throw std::logic_error("the items do not fit");
    return Join({{id, static_cast<uint8_t>(data.size())}, data});
}

// A number: its form's bits, its length, and its codes.
inline Bytes Number(uint8_t id, const std::string& form, const std::string& codes)
{
    return Item(id, form + Bits(static_cast<unsigned>(codes.size()), 8) + Characters(codes, 4));
}

inline std::u16string Widen(const std::string& text)
{
    return {text.begin(), text.end()};
}
