#include "simulator/handset/reply.h"

#include "simulator/commands/command.h"

#include <algorithm>

namespace simulator {
namespace {

Outcome Refusal(const Command& command, const Departure& departure)
{
    Outcome outcome;
    outcome.status = departure.status.value_or(outcome.status);
    if (command.hasResult)
        outcome.result = departure.result.value_or(outcome.result);
    return outcome;
}

// The reply header, the result where there is one, what the handler wrote; a refusal is filled up with zeros.
void Compose(Answered& answered, const Command& command, const Outcome& outcome, const FieldWriter& body)
{
    FieldWriter header;
    header.U32("command", command.number);
    header.U16("one", 1);
    FieldWriter reply;
    reply.U16("status", outcome.status);
    if (command.hasResult)
        reply.U32("result", outcome.result);
    if (!outcome.IsRefused())
        reply.Append(body);
    header.Append(reply);
    header.Zeros(command.replySize - std::min(command.replySize, header.Written().size()));
    answered.payload = header.Written();
    answered.exchange.reply = reply.Named();
}

void TurnAway(Answered& answered, const Command& command, Status status, const std::string& why)
{
    answered.exchange.name = command.name;
    answered.exchange.rejection = why;
    Compose(answered, command, status, FieldWriter());
}

} // namespace

Answered CarryOut(Phone& phone, std::span<const std::uint8_t> record, const Departure& departure)
{
    FieldReader header(record);
    Answered answered{.exchange = {.command = header.U32("command")}};
    const Command* command = FindCommand(answered.exchange.command);
    if (!command) {
        const Command unknown{
            answered.exchange.command, "unknown command", kRequestHeaderSize, kReplyHeaderSize, false, nullptr};
        TurnAway(answered, unknown, kUnknownCommand, "refused");
        return answered;
    }
    if (const std::string why = WhyMalformed(*command, record); !why.empty()) {
        TurnAway(answered, *command, kMalformedRequest, why);
        return answered;
    }
    Outcome outcome = Refusal(*command, departure);
    FieldReader request(record.subspan(kRequestHeaderSize));
    FieldWriter body;
    if (!outcome.IsRefused())
        outcome = command->handle(phone, request, body);
    answered.exchange.name = command->name;
    answered.exchange.request = request.Read();
    Compose(answered, *command, outcome, body);
    return answered;
}

Bytes ReplyBytes(Bytes payload, std::optional<std::uint32_t> sequence, const Departure& departure)
{
    payload.resize(std::min(departure.payloadSize.value_or(payload.size()), kLargestPayload));
    for (const Departure::Patch& patch : departure.patches)
        for (std::size_t i = 0; i < 4; ++i)
            if (patch.offset + i < payload.size())
                payload[patch.offset + i] = static_cast<std::uint8_t>(patch.value >> 8 * i);
    Bytes bytes;
    if (!sequence)
        bytes = std::move(payload);
    else {
        ReplyFrame frame{.sequence = *sequence + departure.sequenceShift.value_or(0), .payload = std::move(payload)};
        frame.commandCode = departure.commandCode.value_or(frame.commandCode);
        frame.length = departure.length.value_or(frame.length);
        frame.wrongCheck = departure.wrongCheck;
        bytes = BuildReply(frame);
    }
    bytes.resize(std::min(departure.sentBytes.value_or(bytes.size()), bytes.size()));
    return bytes;
}

void AppendSteps(const Bytes& reply, const Departure& departure, std::vector<Step>& steps)
{
    if (departure.isSilent)
        return;
    Step step{.delay = departure.delay};
    if (departure.line != Departure::Line::Stays) {
        const bool isUnplugged = departure.line == Departure::Line::IsUnplugged;
        step.kind = isUnplugged ? Step::Kind::Unplug : Step::Kind::HangUp;
        steps.push_back(std::move(step));
        return;
    }
    std::vector<std::size_t> ends = departure.pieceEnds;
    ends.push_back(reply.size());
    std::size_t from = 0;
    for (const std::size_t end : ends) {
        const std::size_t to = std::min(end, reply.size());
        if (to == from)
            continue;
        step.bytes.assign(reply.begin() + static_cast<std::ptrdiff_t>(from),
                          reply.begin() + static_cast<std::ptrdiff_t>(to));
        steps.push_back(step);
        from = to;
        step.delay = departure.pause;
    }
}

} // namespace simulator
