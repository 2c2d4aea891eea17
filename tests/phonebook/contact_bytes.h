// Contact records of the handset, byte by byte: built independently of the library's own records.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "wire/record_bytes.h"

struct Entry
{
    uint32_t type = 0;
    std::u16string value{};
    uint32_t speedDial = 0;
    uint32_t isDefault = 0;
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
};

Bytes ToBytes(const Contact& contact);
