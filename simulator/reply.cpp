#include "simulator/reply.h"

#include "simulator/command.h"

#include <algorithm>

namespace simulator {
namespace {

const Fault* Find(const std::vector<Fault>& faults, FaultKind kind)
{
    const auto fault = std::find_if(faults.begin(), faults.end(), [&](const Fault& one) { return one.kind == kind; });
    return fault == faults.end() ? nullptr : &*fault;
}

Outcome Refusal(const Command& command, const std::vector<Fault>& faults)
{
    Outcome outcome;
    if (const Fault* fault = Find(faults, FaultKind::Status))
        outcome.status = static_cast<std::uint16_t>(fault->Value());
    if (const Fault* fault = Find(faults, FaultKind::Result); fault && command.hasResult)
        outcome.result = static_cast<std::uint32_t>(fault->Value());
    return outcome;
}

// The reply header, the result where there is one, what the handler wrote; a refusal is filled up with zeros.
void Compose(Answered& answered, const Command& command, const Outcome& outcome, const FieldWriter& body)
{
    FieldWriter reply;
    reply.U32("command", command.number);
    reply.U16("one", 1);
    reply.U16("status", outcome.status);
    if (command.hasResult)
        reply.U32("result", outcome.result);
    if (!outcome.IsRefused())
        reply.Append(body.Written());
    const std::size_t written = reply.Written().size();
    reply.Zeros(command.replySize - std::min(command.replySize, written));
    answered.payload = reply.Written();
    answered.reply = std::string(command.name) + ": status=" + std::to_string(outcome.status);
    if (command.hasResult)
        answered.reply += " result=" + std::to_string(outcome.result);
    if (!outcome.IsRefused())
        answered.reply += body.Description();
}

std::string InTrace(const std::string& description)
{
    return description.empty() ? "" : ":" + description;
}

void TurnAway(Answered& answered, const Command& command, Status status, const std::string& why)
{
    answered.request = command.name + (" (" + why + ")");
    Compose(answered, command, status, FieldWriter());
}

} // namespace

Answered CarryOut(Phone& phone, std::span<const std::uint8_t> record, const std::vector<Fault>& faults)
{
    FieldReader header(record);
    Answered answered{.command = header.U32("command")};
    const std::uint16_t one = header.U16("one");
    const Command* command = FindCommand(answered.command);
    if (!command) {
        const Command unknown{answered.command, "unknown command", kRequestHeaderSize, kReplyHeaderSize, false,
                              nullptr};
        TurnAway(answered, unknown, kUnknownCommand, "refused");
        return answered;
    }
    const auto expected = ExpectedSize(*command, record);
    if (one != 1 || expected != record.size()) {
        const std::string size = expected ? std::to_string(*expected) : "more";
        TurnAway(answered, *command, kMalformedRequest,
                 one != 1 ? "bytes 4 and 5 are not 1" : std::to_string(record.size()) + " bytes instead of " + size);
        return answered;
    }
    answered.isCounted = true;
    Outcome outcome = Refusal(*command, faults);
    FieldReader request(record.subspan(kRequestHeaderSize));
    FieldWriter body;
    if (!outcome.IsRefused())
        outcome = command->handle(phone, request, body);
    answered.request = command->name + InTrace(request.Description());
    Compose(answered, *command, outcome, body);
    return answered;
}

Bytes ReplyBytes(Bytes payload, std::optional<std::uint32_t> sequence, const std::vector<Fault>& faults)
{
    if (const Fault* fault = Find(faults, FaultKind::Payload))
        payload.resize(static_cast<std::size_t>(std::min<std::int64_t>(fault->Value(), kLargestPayload)));
    for (const Fault& fault : faults)
        if (fault.kind == FaultKind::Patch)
            for (std::size_t i = 0; i < 4; ++i)
                if (const auto at = static_cast<std::size_t>(fault.values[0]) + i; at < payload.size())
                    payload[at] = static_cast<std::uint8_t>(fault.values[1] >> 8 * i);
    Bytes bytes;
    if (!sequence)
        bytes = std::move(payload);
    else {
        ReplyFrame frame{.sequence = *sequence, .payload = std::move(payload)};
        if (const Fault* fault = Find(faults, FaultKind::Sequence))
            frame.sequence += static_cast<std::uint32_t>(fault->Value());
        if (const Fault* fault = Find(faults, FaultKind::Command))
            frame.commandCode = static_cast<std::uint8_t>(fault->Value());
        if (const Fault* fault = Find(faults, FaultKind::Length))
            frame.length = fault->Value();
        frame.wrongCheck = Find(faults, FaultKind::Check) != nullptr;
        bytes = BuildReply(frame);
    }
    if (const Fault* fault = Find(faults, FaultKind::Truncate))
        bytes.resize(std::min(bytes.size(), static_cast<std::size_t>(fault->Value())));
    return bytes;
}

void AppendSteps(const Bytes& reply, const std::vector<Fault>& faults, std::vector<Step>& steps)
{
    Step step;
    for (const Fault& fault : faults)
        if (fault.kind == FaultKind::Delay)
            step.delay += std::chrono::milliseconds(fault.Value());
    if (Find(faults, FaultKind::Silence))
        return;
    if (Find(faults, FaultKind::HangUp) || Find(faults, FaultKind::Unplug)) {
        step.kind = Find(faults, FaultKind::Unplug) ? Step::Kind::Unplug : Step::Kind::HangUp;
        steps.push_back(std::move(step));
        return;
    }
    std::size_t from = 0;
    const Fault* split = Find(faults, FaultKind::Split);
    std::vector<std::size_t> ends;
    if (split)
        for (const std::int64_t end : split->values)
            ends.push_back(std::min(reply.size(), static_cast<std::size_t>(end)));
    ends.push_back(reply.size());
    for (const std::size_t end : ends) {
        if (end == from)
            continue;
        step.bytes.assign(reply.begin() + static_cast<std::ptrdiff_t>(from),
                          reply.begin() + static_cast<std::ptrdiff_t>(end));
        steps.push_back(step);
        from = end;
        step.delay = split ? split->pause : std::chrono::milliseconds(0);
    }
}

} // namespace simulator
