#include "phonebook/contact_bytes.h"

#include <gtest/gtest.h>

namespace {

constexpr size_t kFixedSize = 464;
constexpr size_t kEntrySize = 116;

std::u16string GetWide(const Bytes& bytes, size_t offset, size_t units)
{
    std::u16string text;
    for (size_t unit = 0; unit < units; ++unit) {
        const auto value = static_cast<char16_t>(bytes.at(offset + 2 * unit) | bytes.at(offset + 2 * unit + 1) << 8);
        if (!value)
            break;
        text += value;
    }
    return text;
}

} // namespace

uint32_t Get32(const Bytes& bytes, size_t offset)
{
    return bytes.at(offset) | static_cast<uint32_t>(bytes.at(offset + 1)) << 8 |
           static_cast<uint32_t>(bytes.at(offset + 2)) << 16 | static_cast<uint32_t>(bytes.at(offset + 3)) << 24;
}

Bytes ToBytes(const Contact& contact)
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

Contact FromBytes(const Bytes& bytes)
{
    Contact contact{.record = Get32(bytes, 0),
                    .first = GetWide(bytes, 100, 36),
                    .last = GetWide(bytes, 172, 36),
                    .entries = {},
                    .group = Get32(bytes, 4),
                    .pictureSet = Get32(bytes, 8),
                    .pictureGet = Get32(bytes, 12),
                    .ringer = Get32(bytes, 16)};
    const size_t count = Get32(bytes, 460);
    EXPECT_EQ(bytes.size(), kFixedSize + count * kEntrySize);
    for (size_t offset = kFixedSize; offset < bytes.size(); offset += kEntrySize)
        contact.entries.push_back({.type = Get32(bytes, offset + 4),
                                   .value = GetWide(bytes, offset + 8, 52),
                                   .speedDial = Get32(bytes, offset + 112),
                                   .isDefault = Get32(bytes, offset)});
    EXPECT_EQ(ToBytes(contact), bytes) << "the fields that nobody fills must be zero";
    return contact;
}
