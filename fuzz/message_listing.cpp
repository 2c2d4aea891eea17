// A handset that answers a listing of messages with anything; the host's buffer is as large as the first byte says.
#include <vector>

#include "fuzz/fuzz_world.h"
#include "sms/sms.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    fuzz::World& world = fuzz::World::Get();
    world.SetReplies({data + 1, size - 1});
    CSMS service;
    std::vector<uint8_t> buffer(2u * data[0] + 1);
    PHN_SMS_MESSAGE message{};
    message.pIS637Data = buffer.data();
    PHN_ERROR error = PHN_ERROR_NONE;
    for (bool isFirst = true; world.HasReplies(); isFirst = false) {
        message.uSizeofData = static_cast<uint32_t>(buffer.size());
        if (isFirst)
            service.GetFirstMessage(world.Device(), 1, &message, &error);
        else if (!service.GetNextMessage(world.Device(), &message, &error))
            break;
    }
    return 0;
}
