#include "simulator/commands/command.h"

#include <algorithm>
#include <array>

namespace simulator {
namespace {

std::array<std::span<const Command>, 6> Services()
{
    return {StatusCommands(), SetupCommands(), MessageCommands(), CallCommands(), EventCommands(), ContactCommands()};
}

} // namespace

const Command* FindCommand(std::uint32_t number)
{
    for (const auto rows : Services())
        for (const Command& command : rows)
            if (command.number == number)
                return &command;
    return nullptr;
}

std::vector<Command> AllCommands()
{
    std::vector<Command> all;
    for (const auto rows : Services())
        all.insert(all.end(), rows.begin(), rows.end());
    std::sort(all.begin(), all.end(), [](const Command& a, const Command& b) { return a.number < b.number; });
    return all;
}

std::optional<std::uint64_t> ExpectedSize(const Command& command, std::span<const std::uint8_t> request)
{
    if (command.countOffset == 0)
        return command.requestSize;
    if (request.size() < command.countOffset + 4)
        return std::nullopt;
    FieldReader count(request.subspan(command.countOffset));
    return command.requestSize + std::uint64_t{count.U32("count")} * command.itemSize;
}

std::string WhyMalformed(const Command& command, std::span<const std::uint8_t> request)
{
    FieldReader header(request);
    header.U32("command");
    if (header.U16("one") != 1)
        return "bytes 4 and 5 are not 1";
    const auto expected = ExpectedSize(command, request);
    if (expected == request.size())
        return {};
    return std::to_string(request.size()) + " bytes instead of " + (expected ? std::to_string(*expected) : "more");
}

} // namespace simulator
