#include "phnctl/messages/list.h"

#include "phnctl/cli/progress.h"
#include "phnctl/text/csv.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/table.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace {

// The message that a listing step returns into `buffer`; nothing at the end.
template <class Step>
std::optional<StoredMessage> TakeStep(const Handset& handset, std::int32_t box, Step step)
{
    std::uint8_t buffer[512]; // holds any PDU
    PHN_SMS_MESSAGE record{};
    record.uSize = sizeof record;
    record.pIS637Data = buffer;
    record.uSizeofData = sizeof buffer;
    const PHN_ERROR error = step(&record);
    if (error == PHN_ERROR_NO_MORE_MESSAGES)
        return std::nullopt;
    handset.Check(error, fmt::format("reading the messages of box {}", box));
    StoredMessage message{box, record.wIndex, PduBytes(buffer, buffer + record.uSizeofData), {}};
    message.pdu = ReadPdu(message.bytes);
    return message;
}

std::optional<StoredMessage> First(const Handset& handset, std::int32_t box)
{
    return TakeStep(handset, box, [&](auto* record) { return handset.Api().GetFirstMessage(box, record); });
}

template <class Value>
Json OrNull(const std::optional<Value>& value)
{
    if (!value)
        return {nullptr};
    if constexpr (std::is_same_v<Value, unsigned>)
        return {std::int64_t{*value}};
    else
        return {*value};
}

} // namespace

std::vector<std::int32_t> Boxes(std::optional<std::int32_t> only)
{
    if (only)
        return {*only};
    std::vector<std::int32_t> boxes;
    for (std::int32_t box = PHN_MESSAGE_BOX_FIRST; box <= PHN_MESSAGE_BOX_LAST; ++box)
        boxes.push_back(box);
    return boxes;
}

std::string BoxName(const Labels& labels, std::int32_t box)
{
    return labels.Named("messageBox", box).shown;
}

std::vector<StoredMessage> ReadMessages(const Handset& handset, const std::vector<std::int32_t>& boxes)
{
    Progress progress("reading messages", 0);
    std::vector<StoredMessage> messages;
    for (const std::int32_t box : boxes) {
        for (auto message = First(handset, box); message;
             message = TakeStep(handset, box, [&](auto* record) { return handset.Api().GetNextMessage(record); })) {
            messages.push_back(std::move(*message));
            progress.Step();
        }
    }
    return messages;
}

std::vector<StoredMessage> FindMessages(const Handset& handset, const std::vector<std::uint16_t>& indexes)
{
    // The library has no call that reads one message.
    const std::vector<StoredMessage> all = ReadMessages(handset, Boxes(std::nullopt));
    std::vector<StoredMessage> found;
    for (const std::uint16_t index : indexes) {
        const auto message =
            std::find_if(all.begin(), all.end(), [&](const StoredMessage& one) { return one.index == index; });
        if (message == all.end())
            throw Refusal(PHN_ERROR_MESSAGE_NOT_FOUND, fmt::format("no message has the index {}", index));
        found.push_back(*message);
    }
    return found;
}

std::uint16_t PutMessage(const Handset& handset, decltype(&PHN_SendMessage) call, PduBytes pdu,
                         const std::string& doing)
{
    PHN_SMS_MESSAGE record{};
    record.uSize = sizeof record;
    record.pIS637Data = pdu.data();
    record.uSizeofData = static_cast<std::uint32_t>(pdu.size());
    handset.Check(call(&record), doing);
    return record.wIndex;
}

void DeleteMessage(const Handset& handset, std::uint16_t index)
{
    handset.Check(handset.Api().DeleteMessage(index), fmt::format("deleting message {}", index));
}

std::uint32_t CountMessages(const Handset& handset, std::int32_t box)
{
    const std::uint32_t count = handset.Api().GetMessageCount(box);
    if (count == 0 && First(handset, box))
        throw Refusal(PHN_ERROR_FAILED, fmt::format("the messages of box {} could not be counted", box));
    return count;
}

std::string MessagesTable(const std::vector<StoredMessage>& messages, const Labels& labels, unsigned width)
{
    std::vector<std::vector<std::string>> rows;
    for (const StoredMessage& message : messages) {
        const PduContent& content = message.pdu.content;
        rows.push_back({std::to_string(message.index), BoxName(labels, message.box), content.from.value_or(""),
                        content.time ? ShowTime(*content.time) : "", ShowPriority(content.priority.value_or(0)),
                        content.text.value_or("")});
    }
    return TableText({"Index", "Box", "Number", "Time", "Priority", "Text"}, rows, width);
}

std::string MessagesSheet(const std::vector<StoredMessage>& messages, const Labels& labels)
{
    std::vector<std::vector<std::string>> rows;
    for (const StoredMessage& message : messages) {
        const PduContent& content = message.pdu.content;
        rows.push_back({BoxName(labels, message.box), content.from.value_or(""),
                        content.time ? ShowTime(*content.time) : "", ShowPriority(content.priority.value_or(0)),
                        content.callback.value_or(""), content.text.value_or("")});
    }
    return CsvText({"Box", "Number", "Time", "Priority", "Call back", "Text"}, rows);
}

JsonObject ContentJson(const PduContent& content)
{
    return {{"teleservice", OrNull(content.teleservice)},
            {"from", OrNull(content.from)},
            {"to", OrNull(content.to)},
            {"time", OrNull(content.time ? IsoTime(*content.time) : std::nullopt)},
            {"priority", OrNull(content.priority)},
            {"report", OrNull(content.report)},
            {"callback", OrNull(content.callback)},
            {"text", OrNull(content.text)}};
}

std::string MessagesJson(const std::vector<StoredMessage>& messages)
{
    JsonList list;
    for (const StoredMessage& message : messages) {
        JsonObject object{{"box", {std::int64_t{message.box}}}, {"index", {std::int64_t{message.index}}}};
        for (JsonMember& member : ContentJson(message.pdu.content))
            object.push_back(std::move(member));
        object.emplace_back("pdu", Json{ToHex(message.bytes)});
        list.push_back({std::move(object)});
    }
    return WriteJson({JsonObject{{"messages", {std::move(list)}}}}) + '\n';
}

} // namespace phnctl
