// A modem that answers AT commands with anything. The caller's buffer has as many bytes as the first one says.
#include <memory>

#include "fuzz/fuzz_world.h"
#include "fuzz/require.h"
#include "link/at_commands.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    fuzz::World& world = fuzz::World::Get();
    world.SetReplies({data + 1, size - 1});
    const DWORD room = data[0];
    const std::unique_ptr<char[]> answer(new char[room]);
    DWORD length = 0;
    DWORD error = 0;
    if (GetATCmdStr(world.Device(), "AT\r", 3, answer.get(), room, &length, &error))
        fuzz::Require(length < room);
    SetPhoneMode(world.Device(), 2);
    return 0;
}
