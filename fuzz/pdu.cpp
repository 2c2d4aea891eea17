// A host's PDU is decoded; what it became is encoded as if the handset had stored it, and must fit what a PDU can be.
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "fuzz/fuzz_world.h"
#include "sms/pdu_decoder.h"
#include "sms/pdu_encoder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    fuzz::World::Get();
    const std::unique_ptr<uint8_t[]> exact(new uint8_t[size]); // reading beyond it is found out
    std::copy_n(data, size, exact.get());
    PHN_SMS_MESSAGE host{};
    host.pIS637Data = exact.get();
    host.uSizeofData = static_cast<uint32_t>(size);
    SMS_MESSAGE message;
    PHN_ERROR error = PHN_ERROR_NONE;
    if (!IS637ToText(&host, &message, &error))
        return error == PHN_ERROR_NONE ? (std::abort(), 0) : 0;
    if (message.rcRecord.dwBodySize != 2 * message.strBody.size())
        std::abort();
    uint8_t buffer[512];
    host.pIS637Data = buffer;
    host.uSizeofData = sizeof buffer;
    if (!TextToIS637(&host, message, &error))
        std::abort();
    return 0;
}
