#include "simulator/phone/message_store.h"

namespace simulator {

std::uint32_t AddMessage(Phone& phone, const Message& message)
{
    constexpr std::uint32_t kLastIndex = 0xFFFF; // a host sends back the low 16 bits only
    if (phone.messages.size() >= phone.limits.messages)
        return kNoRoom;
    std::uint32_t index = phone.messages.empty() ? 0 : phone.messages.rbegin()->first + 1;
    if (index > kLastIndex)
        for (index = 0; phone.messages.contains(index) && index <= kLastIndex; ++index)
            ;
    if (index > kLastIndex)
        return kNoRoom;
    phone.messages[index] = message;
    return index;
}

} // namespace simulator
