// Commands 25 to 28: the call lists 1 to 4. A list is read in the order of its entry ids.
#include "simulator/commands/command.h"

#include <algorithm>
#include <array>

namespace simulator {
namespace {

bool IsList(std::uint32_t list)
{
    return list >= 1 && list <= 4;
}

void WriteCall(std::uint32_t id, const Call& call, FieldWriter& reply)
{
    reply.U32("id", id);
    reply.U32("entry4", call.entry4);
    reply.U32("duration", call.duration);
    reply.Time("time", call.time);
    reply.Zeros(80);
    reply.Text("text", call.text, 52);
}

Outcome CountCalls(Phone& phone, FieldReader& request, FieldWriter& reply)
{
    const std::uint32_t list = request.U32("list");
    if (!IsList(list))
        return kBadIndex;
    const auto isInList = [&](const auto& call) { return call.second.list == list; };
    reply.U32("entries", static_cast<std::uint32_t>(std::count_if(phone.calls.begin(), phone.calls.end(), isInList)));
    return {};
}

// The first entry of the list at or behind `position`.
Outcome ReadEntry(const Phone& phone, std::uint32_t list, std::map<std::uint32_t, Call>::const_iterator position,
                  FieldWriter& reply)
{
    if (!IsList(list))
        return kBadIndex;
    position = std::find_if(position, phone.calls.end(), [&](const auto& call) { return call.second.list == list; });
    if (position == phone.calls.end())
        return kEndOfList;
    reply.U32("entries", 1);
    WriteCall(position->first, position->second, reply);
    return {};
}

Outcome FirstCall(Phone& phone, FieldReader& request, FieldWriter& reply)
{
    return ReadEntry(phone, request.U32("list"), phone.calls.begin(), reply);
}

Outcome NextCall(Phone& phone, FieldReader& request, FieldWriter& reply)
{
    const std::uint32_t list = request.U32("list");
    return ReadEntry(phone, list, phone.calls.upper_bound(request.U32("previous")), reply);
}

Outcome ClearCalls(Phone& phone, FieldReader& request, FieldWriter&)
{
    const std::uint32_t list = request.U32("list");
    if (!IsList(list))
        return kNoSuchList; // this reply has no result
    std::erase_if(phone.calls, [&](const auto& call) { return call.second.list == list; });
    return {};
}

constexpr std::array kCommands{
    Command{25, "count calls", 10, 16, true, CountCalls},
    Command{26, "first call", 10, 16, true, FirstCall},
    Command{27, "next call", 14, 16, true, NextCall},
    Command{28, "clear calls", 10, 8, false, ClearCalls},
};

} // namespace

std::span<const Command> CallCommands()
{
    return kCommands;
}

} // namespace simulator
