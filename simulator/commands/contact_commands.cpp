// Commands 34 to 41: the phonebook, and the names of pictures, ringers and groups.
#include "simulator/commands/command.h"
#include "simulator/phone/utf.h"

#include <algorithm>
#include <array>

namespace simulator {
namespace {

constexpr std::size_t kRecordSize = 464;
constexpr std::size_t kEntrySize = 116;
constexpr std::size_t kMaxEntries = 20;
constexpr std::uint32_t kFirstEmailType = 5;
constexpr std::uint32_t kLastType = 6;

Outcome ReadFieldSizes(Phone& phone, FieldReader&, FieldWriter& reply)
{
    const Limits& limits = phone.limits;
    reply.U32("size1", limits.nameLength);
    reply.U32("size2", limits.nameLength);
    reply.U32("size3", limits.numberLength);
    reply.U32("size4", limits.emailLength);
    reply.U32("size5", kMaxEntries);
    reply.U32("size6", 36);
    reply.U32("size7", kLastType + 1);
    reply.U32("size8", limits.contacts);
    reply.U32("size9", static_cast<std::uint32_t>(phone.contacts.size()));
    reply.U32("size10", static_cast<std::uint32_t>(phone.groups.size()));
    reply.U32("size11", static_cast<std::uint32_t>(phone.ringers.size()));
    return {};
}

void WriteContact(std::uint32_t id, const Contact& contact, FieldWriter& reply)
{
    reply.U32("id", id);
    reply.U32("group", contact.group);
    reply.Zeros(4); // the picture as written
    reply.U32("picture", contact.picture);
    reply.U32("ringer", contact.ringer);
    reply.Text("text", contact.text, 40);
    reply.Text("firstName", contact.firstName, 36);
    reply.Text("lastName", contact.lastName, 36);
    reply.Zeros(216);
    reply.U32("entries", static_cast<std::uint32_t>(contact.entries.size()));
    for (const ContactEntry& entry : contact.entries) {
        reply.U32("default", entry.isDefault);
        reply.U32("type", entry.type);
        reply.Text("value", entry.value, 52);
        reply.U32("speedDial", entry.speedDial);
    }
}

Contact ReadContact(FieldReader& request)
{
    Contact contact;
    contact.group = request.U32("group");
    contact.picture = request.U32("picture");
    request.Skip(4); // the picture as read
    contact.ringer = request.U32("ringer");
    contact.text = request.Text("text", 40);
    contact.firstName = request.Text("firstName", 36);
    contact.lastName = request.Text("lastName", 36);
    request.Skip(216);
    contact.entries.resize(request.U32("entries"));
    for (ContactEntry& entry : contact.entries) {
        entry.isDefault = request.U32("default");
        entry.type = request.U32("type");
        entry.value = request.Text("value", 52);
        entry.speedDial = request.U32("speedDial");
    }
    return contact;
}

bool Fits(const Contact& contact, const Limits& limits)
{
    const auto isLonger = [](const std::string& text, std::uint32_t units) { return ToUtf16(text).size() > units; };
    if (isLonger(contact.firstName, limits.nameLength) || isLonger(contact.lastName, limits.nameLength))
        return false;
    return contact.entries.size() <= kMaxEntries &&
           std::none_of(contact.entries.begin(), contact.entries.end(), [&](const ContactEntry& entry) {
               const std::uint32_t room = entry.type < kFirstEmailType ? limits.numberLength : limits.emailLength;
               return entry.type > kLastType || isLonger(entry.value, room);
           });
}

Outcome GetContact(Phone& phone, FieldReader& request, FieldWriter& reply)
{
    const std::uint32_t id = request.U32("id");
    if (id >= phone.limits.contacts)
        return kBadIndex;
    const auto contact = phone.contacts.find(id);
    const bool isThere = contact != phone.contacts.end();
    reply.Zeros(4);
    reply.U32("records", isThere ? 1 : 0);
    if (isThere)
        WriteContact(id, contact->second, reply);
    return {};
}

// The first free id from `wanted` on, then from 0, that this handset gives to a new contact; the capacity when there is
// none.
std::uint32_t ChooseId(const Phone& phone, std::uint32_t wanted)
{
    const std::uint32_t capacity = phone.limits.contacts;
    for (std::uint32_t i = 0; i < capacity; ++i) {
        const std::uint32_t id = (wanted + i) % capacity;
        if (id % 10 != phone.limits.skippedDigit && !phone.contacts.contains(id))
            return id;
    }
    return capacity;
}

Outcome SetContact(Phone& phone, FieldReader& request, FieldWriter& reply)
{
    std::uint32_t id = request.U32("id");
    const Contact contact = ReadContact(request);
    if (id >= phone.limits.contacts)
        return kBadIndex;
    if (!Fits(contact, phone.limits))
        return kDoesNotFit;
    if (!phone.contacts.contains(id))
        id = ChooseId(phone, id);
    if (id >= phone.limits.contacts)
        return kStoreFull;
    phone.contacts[id] = contact;
    reply.U32("id", id);
    return {};
}

Outcome DeleteContact(Phone& phone, FieldReader& request, FieldWriter& reply)
{
    const std::uint32_t id = request.U32("id");
    if (id >= phone.limits.contacts)
        return kBadIndex;
    if (phone.contacts.erase(id) == 0)
        return kAbsent;
    reply.U32("id", id);
    return {};
}

Outcome DeleteAllContacts(Phone& phone, FieldReader&, FieldWriter& reply)
{
    phone.contacts.clear();
    reply.Zeros(4);
    return {};
}

Outcome ReadName(const std::map<std::uint32_t, std::string>& names, FieldReader& request, FieldWriter& reply)
{
    const auto name = names.find(request.U32("id"));
    if (name == names.end())
        return kAbsent;
    reply.Text("name", name->second, 36);
    return {};
}

constexpr std::array kCommands{
    Command{34, "phonebook field sizes", 6, 52, false, ReadFieldSizes},
    Command{35, "read contact", 10, 20, true, GetContact},
    Command{36, "write contact", 6 + kRecordSize, 16, true, SetContact, 6 + kRecordSize - 4, kEntrySize},
    Command{37, "delete contact", 10, 16, true, DeleteContact},
    Command{38, "delete all contacts", 6, 16, true, DeleteAllContacts},
    Command{39, "picture id", 14, 84, true,
            [](Phone& phone, FieldReader& request, FieldWriter& reply) {
                return ReadName(phone.pictures, request, reply);
            }},
    Command{
        40, "ringer id", 10, 84, true,
        [](Phone& phone, FieldReader& request, FieldWriter& reply) { return ReadName(phone.ringers, request, reply); }},
    Command{
        41, "group", 10, 84, true,
        [](Phone& phone, FieldReader& request, FieldWriter& reply) { return ReadName(phone.groups, request, reply); }},
};

} // namespace

std::span<const Command> ContactCommands()
{
    return kCommands;
}

} // namespace simulator
