// Commands 1 to 5 and 49: greeting, live status and the flags of what changed.
#include "simulator/commands/command.h"

#include <array>
#include <utility>

namespace simulator {
namespace {

Outcome Greet(Phone&, FieldReader&, FieldWriter&)
{
    return {};
}

Outcome ReadConnection(Phone& phone, FieldReader&, FieldWriter& reply)
{
    const Connection& connection = phone.connection;
    reply.U32("connection0", connection.connection0);
    reply.U32("connection4", connection.connection4);
    reply.U32("connection8", connection.connection8);
    reply.U32("connection12", connection.connection12);
    reply.U8("connection16", connection.connection16);
    reply.U8("endReason", connection.endReason);
    reply.U8("connection18", connection.connection18);
    return {};
}

Outcome ReadNetwork(Phone& phone, FieldReader&, FieldWriter& reply)
{
    const Network& network = phone.network;
    reply.U32("network0", network.network0);
    reply.U8("network4", network.network4);
    reply.U8("network5", network.network5);
    reply.U16("network6", network.network6);
    reply.U16("network8", network.network8);
    reply.U16("network10", network.network10);
    reply.U16("network12", network.network12);
    reply.U16("network14", network.network14);
    reply.U16("network16", network.network16);
    reply.U16("network18", network.network18);
    reply.U16("network20", network.network20);
    reply.I32("network22", network.network22);
    reply.Characters("network26", network.network26, 34);
    reply.I32("network60", network.network60);
    reply.U32("network64", network.network64);
    return {};
}

Outcome ReadBattery(Phone& phone, FieldReader&, FieldWriter& reply)
{
    reply.U8("battery1", phone.battery.battery1);
    reply.U8("battery2", phone.battery.battery2);
    return {};
}

Outcome ReadVariance(Phone& phone, FieldReader&, FieldWriter& reply)
{
    reply.U16("flags", std::exchange(phone.variance, std::uint16_t{0}));
    return {};
}

constexpr std::array kCommands{
    Command{1, "startup", 6, 8, false, Greet},
    Command{2, "shutdown", 6, 8, false, Greet},
    Command{3, "connection information", 6, 27, false, ReadConnection},
    Command{4, "network information", 6, 76, false, ReadNetwork},
    Command{5, "battery information", 6, 10, false, ReadBattery},
    Command{49, "phone variance", 6, 10, false, ReadVariance},
};

} // namespace

std::span<const Command> StatusCommands()
{
    return kCommands;
}

} // namespace simulator
