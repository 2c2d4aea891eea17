// Message records and PDUs, built independently of the library: records byte by byte, PDUs from texts of binary digits.
#pragma once

#include <cstdint>
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
Bytes ToBytes(const Record& record);

// `value` as `count` binary digits.
std::string Bits(unsigned value, unsigned count);
// Each character of the text as its `count` low bits.
std::string Characters(const std::string& text, unsigned count);

// Identifier, length, and the bits as `length` bytes, filled up with zeros.
Bytes Item(uint8_t id, const std::string& bits, size_t length);
// The same with just as many bytes as the bits need.
Bytes Item(uint8_t id, const std::string& bits);
// The items one after the other, as the data of one more.
Bytes Group(uint8_t id, const std::vector<Bytes>& items);

// A number: its form's bits, its length, and its codes.
Bytes Number(uint8_t id, const std::string& form, const std::string& codes);

std::u16string Widen(const std::string& text);

Bytes Join(const std::vector<Bytes>& parts);
