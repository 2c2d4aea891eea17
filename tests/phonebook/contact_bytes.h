// Contact records of the handset, byte by byte: built and taken apart independently of the library's own records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "wire/record_bytes.h"

struct Entry
{
    uint32_t type = 0;
    std::u16string value{};
    uint32_t speedDial = 0;
    uint32_t isDefault = 0;

    bool operator==(const Entry&) const = default;
};

struct Contact
{
    uint32_t record = 0;
    std::u16string first{};
    std::u16string last{};
    std::vector<Entry> entries{};
    uint32_t group = 0;
    uint32_t pictureSet = 0;
    uint32_t pictureGet = 0;
    uint32_t ringer = 0;

    bool operator==(const Contact&) const = default;
};

uint32_t Get32(const Bytes& bytes, size_t offset);

Bytes ToBytes(const Contact& contact);
// The contact at the begin of the bytes, which must hold nothing else.
Contact FromBytes(const Bytes& bytes);
