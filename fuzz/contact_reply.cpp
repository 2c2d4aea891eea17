// A handset that answers the reading of a contact with anything. The host's buffer has as many bytes as the first two
// say; its end is never written beyond, and what a success leaves there is terminated.
#include <cstdlib>
#include <cstring>
#include <vector>

#include "fuzz/fuzz_world.h"
#include "phonebook/speed_dial_phonebook.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2)
        return 0;
    fuzz::World& world = fuzz::World::Get();
    world.SetReplies({data + 2, size - 2});
    std::vector<char> buffer(1 + (data[0] | size_t{data[1]} << 8) % 5000, '#');
    PHN_CONTACT_RECORD record{0, buffer.data(), static_cast<uint32_t>(buffer.size())};
    PHN_ERROR error = PHN_ERROR_NONE;
    CSpeedDialPhonebook service;
    const bool isRead = service.GetContact(world.Device(), 1, &record, &error);
    if (isRead ? !std::memchr(buffer.data(), '\0', buffer.size()) : error == PHN_ERROR_NONE || buffer[0] != '#')
        std::abort();
    return 0;
}
