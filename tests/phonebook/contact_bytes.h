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

inline Bytes ToBytes(const Contact& contact)
{
    Bytes bytes;
    Put32(bytes, contact.record);
    Put32(bytes, contact.group);
    Put32(bytes, contact.pictureSet);
    Put32(bytes, contact.pictureGet);
    Put32(bytes, contact.ringer);
    PutWide(bytes, u"", 40);
    PutWide(bytes, contact.first, 36);
    PutWide(bytes, contact.last, 36);
    bytes.resize(460);
    Put32(bytes, static_cast<uint32_t>(contact.entries.size()));
    for (const Entry& entry : contact.entries) {
        Put32(bytes, entry.isDefault);
        Put32(bytes, entry.type);
        PutWide(bytes, entry.value, 52);
        Put32(bytes, entry.speedDial);
    }
    return bytes;
}
