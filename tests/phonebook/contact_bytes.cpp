#include "phonebook/contact_bytes.h"

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
