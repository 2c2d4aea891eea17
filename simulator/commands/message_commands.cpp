// Commands 15 to 22 and 46: the message boxes. A box lists its messages in the order of their indexes.
#include "simulator/commands/command.h"
#include "simulator/phone/message_store.h"
#include "simulator/phone/utf.h"

#include <algorithm>
#include <array>

namespace simulator {
namespace {

constexpr std::size_t kRecordSize = 172;
constexpr std::uint32_t kBoxes = 5;

void WriteMessage(std::uint32_t index, const Message& message, FieldWriter& reply)
{
    const std::size_t units = ToUtf16(message.body).size() + 1;
    reply.U32("index", index);
    reply.U32("status", message.status);
    reply.U32("replyOption", message.replyOption);
    reply.Time("time", message.time);
    reply.Text("address", message.address, 36);
    reply.Text("callback", message.callback, 36);
    reply.U32("priority", message.priority);
    reply.U32("bodySize", message.hasBody ? static_cast<std::uint32_t>(2 * units) : 0);
    if (message.hasBody)
        reply.Text("body", message.body, units);
}

Message ReadMessage(FieldReader& request)
{
    Message message;
    request.U32("index");
    request.Skip(4);
    message.replyOption = request.U32("replyOption");
    message.time = request.Time("time");
    message.address = request.Text("address", 36);
    message.callback = request.Text("callback", 36);
    message.priority = request.U32("priority");
    const std::uint32_t size = request.U32("bodySize");
    message.hasBody = size != 0;
    message.body = request.Text("body", size / 2);
    return message;
}

Outcome Store(Phone& phone, Message message, std::uint32_t box, FieldWriter& reply)
{
    if (ToUtf16(message.body).size() > phone.limits.bodyLength)
        return kDoesNotFit;
    message.box = box;
    message.status = kRead;
    const std::uint32_t index = AddMessage(phone, message);
    if (index == kNoRoom)
        return kStoreFull;
    reply.U32("index", index);
    return {};
}

Outcome CountMessages(Phone& phone, FieldReader& request, FieldWriter& reply)
{
    const std::uint32_t box = request.U32("box");
    if (box >= kBoxes)
        return kBadIndex;
    const auto isInBox = [&](const auto& message) { return message.second.box == box; };
    reply.U32("messages",
              static_cast<std::uint32_t>(std::count_if(phone.messages.begin(), phone.messages.end(), isInBox)));
    return {};
}

Outcome SendMessage(Phone& phone, FieldReader& request, FieldWriter& reply)
{
    const Message message = ReadMessage(request);
    if (phone.setup.radio == 0)
        return kNoService;
    if (message.address.empty())
        return kNoAddress;
    return Store(phone, message, kSentBox, reply);
}

Outcome SaveMessage(Phone& phone, FieldReader& request, FieldWriter& reply)
{
    return Store(phone, ReadMessage(request), kDraftBox, reply);
}

// The first message of the box at or behind `position`; none ends the listing.
Outcome List(const Phone& phone, std::uint32_t box, std::map<std::uint32_t, Message>::const_iterator position,
             FieldWriter& reply)
{
    if (box >= kBoxes)
        return kBadIndex;
    position =
        std::find_if(position, phone.messages.end(), [&](const auto& message) { return message.second.box == box; });
    const bool isThere = position != phone.messages.end();
    reply.U32("messages", isThere ? 1 : 0);
    if (isThere)
        WriteMessage(position->first, position->second, reply);
    return {};
}

Outcome FirstMessage(Phone& phone, FieldReader& request, FieldWriter& reply)
{
    return List(phone, request.U32("box"), phone.messages.begin(), reply);
}

Outcome NextMessage(Phone& phone, FieldReader& request, FieldWriter& reply)
{
    const std::uint32_t box = request.U32("box");
    return List(phone, box, phone.messages.upper_bound(request.U32("previous")), reply);
}

Outcome DeleteMessage(Phone& phone, FieldReader& request, FieldWriter& reply)
{
    const std::uint32_t index = request.U32("index");
    if (phone.messages.erase(index) == 0)
        return kAbsent;
    reply.U32("index", index);
    return {};
}

Outcome DeleteAllMessages(Phone& phone, FieldReader& request, FieldWriter& reply)
{
    const std::uint32_t box = request.U32("box");
    if (box >= kBoxes)
        return kBadIndex;
    std::erase_if(phone.messages, [&](const auto& message) { return message.second.box == box; });
    reply.Zeros(4);
    return {};
}

Outcome SetStatus(Phone& phone, FieldReader& request, FieldWriter& reply)
{
    const std::uint32_t index = request.U32("index");
    const std::uint32_t status = request.U32("status");
    const auto message = phone.messages.find(index);
    if (message == phone.messages.end())
        return kAbsent;
    message->second.status = status;
    reply.U32("index", index);
    return {};
}

Outcome OpenStore(Phone&, FieldReader&, FieldWriter&)
{
    return {};
}

constexpr std::array kCommands{
    Command{15, "count messages", 10, 16, true, CountMessages},
    Command{16, "send message", 6 + kRecordSize, 16, true, SendMessage, 6 + kRecordSize - 4, 1},
    Command{17, "first message", 10, 16, true, FirstMessage},
    Command{18, "next message", 14, 16, true, NextMessage},
    Command{19, "save message", 6 + kRecordSize, 16, true, SaveMessage, 6 + kRecordSize - 4, 1},
    Command{20, "delete message", 10, 16, true, DeleteMessage},
    Command{21, "delete all messages", 10, 16, true, DeleteAllMessages},
    Command{22, "set message status", 14, 16, true, SetStatus},
    Command{46, "open message store", 6, 8, false, OpenStore},
};

} // namespace

std::span<const Command> MessageCommands()
{
    return kCommands;
}

} // namespace simulator
