#include "simulator/recording/dissector.h"

#include "simulator/commands/command.h"
#include "simulator/commands/fields.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>

namespace simulator {
namespace {

using enum Dissection::Kind;

constexpr std::size_t kRemembered = 16;

constexpr std::array kHeader{FieldLayout{"", Form::Unsigned, 4}, FieldLayout{"", Form::Unsigned, 2}};
constexpr std::array kStatus{FieldLayout{"status", Form::Unsigned, 2}};
constexpr std::array kStatusAndResult{FieldLayout{"status", Form::Unsigned, 2},
                                      FieldLayout{"result", Form::Unsigned, 4}};

void Place(Dissection& dissection, const Layout& layout, std::span<const std::uint8_t> bytes, std::size_t offset)
{
    const auto placed = PlaceFields(layout, bytes, offset);
    dissection.fields.insert(dissection.fields.end(), placed.begin(), placed.end());
}

// The bytes before the first zero.
std::span<const std::uint8_t> UpToZero(std::span<const std::uint8_t> bytes)
{
    return bytes.first(static_cast<std::size_t>(std::find(bytes.begin(), bytes.end(), 0) - bytes.begin()));
}

void Decode(const PlacedField& field, std::span<const std::uint8_t> bytes, Fields& fields)
{
    const FieldLayout& layout = *field.layout;
    FieldReader reader(bytes.subspan(field.offset, field.size));
    switch (layout.form) {
    case Form::Unsigned:
        field.size == 1 ? reader.U8(layout.name) : field.size == 2 ? reader.U16(layout.name) : reader.U32(layout.name);
        break;
    case Form::Signed:
        fields.push_back(
            {std::string(layout.name), std::to_string(static_cast<std::int32_t>(reader.U32(layout.name)))});
        return;
    case Form::Text:
        reader.Text(layout.name, field.size / 2);
        break;
    case Form::Characters: {
        const auto text = UpToZero(bytes.subspan(field.offset, field.size));
        reader = FieldReader(text);
        reader.Characters(layout.name, text.size());
        break;
    }
    case Form::Digits:
        reader = FieldReader(bytes.subspan(field.offset, field.size));
        for (std::size_t i = UpToZero(bytes.subspan(field.offset, field.size)).size(); i > 0; --i)
            reader.U8(layout.name);
        break;
    case Form::Time:
        reader.Time(layout.name);
        break;
    }
    fields.insert(fields.end(), reader.Read().begin(), reader.Read().end());
}

Fields Decode(const std::vector<PlacedField>& placed, std::span<const std::uint8_t> bytes)
{
    Fields fields;
    for (const PlacedField& field : placed)
        if (!field.layout->name.empty())
            Decode(field, bytes, fields);
    return fields;
}

std::string Name(std::uint32_t command)
{
    const Command* const known = FindCommand(command);
    return known ? known->name : "unknown command";
}

// Text of a modem port, without the line ends around it.
std::string TextLine(std::span<const std::uint8_t> bytes)
{
    const auto isLineEnd = [](std::uint8_t byte) { return byte == '\r' || byte == '\n'; };
    while (!bytes.empty() && isLineEnd(bytes.front()))
        bytes = bytes.subspan(1);
    while (!bytes.empty() && isLineEnd(bytes.back()))
        bytes = bytes.first(bytes.size() - 1);
    FieldReader reader(bytes);
    return reader.Characters("line", bytes.size());
}

// Lays header and fields of a request record over plain[offset, end).
void PlaceRequest(Dissection& dissection, std::size_t offset, std::size_t end)
{
    const auto record = std::span<const std::uint8_t>(dissection.plain).first(end);
    Exchange& exchange = dissection.exchange;
    exchange.command = FieldReader(record.subspan(offset)).U32("command");
    exchange.name = Name(exchange.command);
    Place(dissection, {kHeader}, record, offset);
    const Command* const command = FindCommand(exchange.command);
    exchange.rejection = command ? WhyMalformed(*command, record.subspan(offset)) : "refused";
    if (exchange.rejection.empty())
        Place(dissection, RequestLayout(exchange.command), record, offset + kRequestHeaderSize);
    exchange.request = Decode(dissection.fields, record);
}

} // namespace

bool IsAtCommand(const std::string& line)
{
    return line.size() >= 2 && std::toupper(static_cast<unsigned char>(line[0])) == 'A' &&
           std::toupper(static_cast<unsigned char>(line[1])) == 'T';
}

Dissection Dissector::Dissect(const Packet& packet)
{
    Dissection dissection;
    if (packet.bytes.empty()) {
        dissection.kind = Closing;
        return dissection;
    }
    const bool isRequest = packet.sender == Sender::Host;
    dissection.plain = packet.bytes;
    if (kind_ == PortKind::Modem)
        isRequest ? DissectModemRequest(dissection) : DissectModemReply(dissection);
    else if (packet.bytes.back() != kFlag)
        dissection.exchange.rejection = "a frame without its flag";
    else if (packet.bytes.size() == 1)
        dissection.exchange.rejection = "a flag alone";
    else {
        dissection.plain.pop_back();
        isRequest ? DissectRequestFrame(dissection) : DissectReplyFrame(dissection);
    }
    if (dissection.kind == Unknown)
        dissection.exchange.name = isRequest ? "rejected" : "not understood";
    return dissection;
}

void Dissector::DissectRequestFrame(Dissection& dissection)
{
    const RequestFrame frame = ParseRequest(dissection.plain);
    dissection.exchange.rejection = frame.reason;
    if (!frame.reason.empty())
        return;
    if (frame.record.size() < kRequestHeaderSize) {
        dissection.exchange.rejection = "a request of " + std::to_string(frame.record.size()) + " bytes";
        return;
    }
    dissection.kind = Framed;
    dissection.plain = Unstuff(dissection.plain);
    dissection.exchange.sequence = frame.sequence;
    PlaceRequest(dissection, kRequestRecordOffset, dissection.plain.size() - kCheckSize);
    Remember(dissection.exchange, std::span(frame.record).first(kRequestHeaderSize));
}

void Dissector::DissectReplyFrame(Dissection& dissection)
{
    const Bytes frame = Unstuff(dissection.plain);
    Exchange& exchange = dissection.exchange;
    if (frame.size() < kReplyPayloadOffset + kCheckSize || frame.front() != kCommandCode) {
        exchange.rejection = "no reply frame";
        return;
    }
    const auto checked = std::span(frame).first(frame.size() - kCheckSize);
    exchange.sequence = FieldReader(checked.subspan(kReplySequenceOffset)).U32("sequence");
    const Request* const request = RequestOf(exchange.sequence);
    if (!request) {
        exchange.rejection = "the sequence identifier of no request";
        return;
    }
    dissection.kind = Framed;
    dissection.plain = frame;
    dissection.isCheckRight = FieldReader(std::span(frame).last(kCheckSize)).U16("check") == CheckValue(checked);
    PlaceReply(dissection, *request, kReplyPayloadOffset, checked.size());
}

void Dissector::DissectModemRequest(Dissection& dissection)
{
    Exchange& exchange = dissection.exchange;
    const std::string line = TextLine(dissection.plain);
    if (IsAtCommand(line)) {
        dissection.kind = At;
        exchange.command = kAtCommands;
        exchange.name = "at";
        exchange.request = {{"line", line, Field::Kind::Text}};
        Remember(exchange, {});
    } else if (dissection.plain.size() >= kRequestHeaderSize) {
        dissection.kind = Raw;
        PlaceRequest(dissection, 0, dissection.plain.size());
        Remember(exchange, std::span(dissection.plain).first(kRequestHeaderSize));
    } else
        exchange.rejection = "neither an AT command nor a record";
}

void Dissector::DissectModemReply(Dissection& dissection)
{
    Exchange& exchange = dissection.exchange;
    const Request* const request = RequestOf(std::nullopt);
    if (!request)
        exchange.rejection = "nothing was asked";
    else if (request->command == kAtCommands) {
        dissection.kind = At;
        exchange.command = kAtCommands;
        exchange.name = "at";
        exchange.reply = {{"answer", TextLine(dissection.plain), Field::Kind::Text}};
    } else {
        dissection.kind = Raw;
        PlaceReply(dissection, *request, 0, dissection.plain.size());
    }
}

// Lays header, status, result and fields over plain[offset, end). Nobody interprets the header, so only an echo of the
// request's counts as understood.
void Dissector::PlaceReply(Dissection& dissection, const Request& request, std::size_t offset, std::size_t end)
{
    const auto payload = std::span<const std::uint8_t>(dissection.plain).first(end);
    Exchange& exchange = dissection.exchange;
    exchange.command = request.command;
    exchange.name = Name(request.command);
    if (payload.size() - offset < kReplyHeaderSize)
        return;
    if (std::equal(request.header.begin(), request.header.end(), payload.begin() + static_cast<std::ptrdiff_t>(offset)))
        Place(dissection, {kHeader}, payload, offset);
    const Command* const command = FindCommand(request.command);
    const bool hasResult = command && command->hasResult;
    Place(dissection, hasResult ? Layout{kStatusAndResult} : Layout{kStatus}, payload, offset + kRequestHeaderSize);
    exchange.reply = Decode(dissection.fields, payload);
    const bool isDone = std::all_of(exchange.reply.begin(), exchange.reply.end(),
                                    [](const Field& field) { return field.value == "0"; });
    if (!isDone || !command)
        return;
    Place(dissection, ReplyLayout(request.command), payload, offset + kReplyHeaderSize + (hasResult ? 4 : 0));
    exchange.reply = Decode(dissection.fields, payload);
}

void Dissector::Remember(const Exchange& exchange, std::span<const std::uint8_t> header)
{
    requests_.push_front({exchange.command, exchange.sequence, Bytes(header.begin(), header.end())});
    if (requests_.size() > kRemembered)
        requests_.pop_back();
}

// The latest one of this sequence identifier.
const Dissector::Request* Dissector::RequestOf(std::optional<std::uint32_t> sequence) const
{
    const auto request =
        std::find_if(requests_.begin(), requests_.end(), [&](const Request& one) { return one.sequence == sequence; });
    return request == requests_.end() ? nullptr : &*request;
}

} // namespace simulator
