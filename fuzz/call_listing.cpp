// A handset that answers the reading of a joined call list with anything.
#include "callhistory/call_history.h"
#include "fuzz/fuzz_world.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    fuzz::World& world = fuzz::World::Get();
    world.SetReplies({data, size});
    CCallHistory service;
    PHN_CALL_ENTRY entry{};
    PHN_ERROR error = PHN_ERROR_NONE;
    bool isRead = service.GetFirstCallEntry(world.Device(), 1, &entry, &error);
    while (isRead && world.HasReplies())
        isRead = service.GetNextCallEntry(world.Device(), &entry, &error);
    return 0;
}
