// The host's side of the wire, for tests of the simulated handset: request records, frames, and replies taken apart.
#pragma once

#include "simulator/commands/fields.h"
#include "simulator/handset/session.h"

#include <span>

namespace host {

using simulator::Bytes;

inline simulator::FieldWriter Record(std::uint32_t command)
{
    simulator::FieldWriter record;
    record.U32("command", command);
    record.U16("one", 1);
    return record;
}

inline Bytes Record(std::uint32_t command, std::initializer_list<std::uint32_t> values)
{
    simulator::FieldWriter record = Record(command);
    for (const std::uint32_t value : values)
        record.U32("value", value);
    return record.Written();
}

inline Bytes Frame(std::uint32_t sequence, std::span<const std::uint8_t> record)
{
    simulator::FieldWriter frame;
    frame.U32("header", 0x0013004B);
    frame.U32("sequence", sequence);
    frame.Append(record);
    frame.U16("check", simulator::CheckValue(frame.Written()));
    return simulator::Stuff(frame.Written());
}

inline Bytes Sent(const std::vector<simulator::Step>& steps)
{
    Bytes all;
    for (const simulator::Step& step : steps)
        all.insert(all.end(), step.bytes.begin(), step.bytes.end());
    return all;
}

inline std::uint32_t NumberAt(const Bytes& bytes, std::size_t offset)
{
    simulator::FieldReader reader(bytes);
    reader.Skip(offset);
    return reader.U32("number");
}

struct Reply
{
    std::uint32_t number; // the result, of most commands
    Bytes rest;           // behind it
};

// Asks without frames, as on the modem port in mode 2, where a test need not repeat what frames are.
class Asker
{
public:
    explicit Asker(simulator::Handset& handset) : session_(handset, simulator::PortKind::Modem)
    {
        const std::string_view mode = "AT+MODE=2\r";
        session_.Receive(Bytes(mode.begin(), mode.end()));
    }

    Reply Ask(const Bytes& record)
    {
        const Bytes bytes = Sent(session_.Receive(record));
        return {NumberAt(bytes, 8), bytes.size() > 12 ? Bytes(bytes.begin() + 12, bytes.end()) : Bytes()};
    }
    Reply Ask(std::uint32_t command, std::initializer_list<std::uint32_t> values)
    {
        return Ask(Record(command, values));
    }

private:
    simulator::Session session_;
};

} // namespace host
