// Any file as the state of the simulated handset: it is refused, or comes back the same.
#include <stdexcept>
#include <string_view>

#include "fuzz/require.h"
#include "simulator/phone/state_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace simulator;
    try {
        const Phone phone = PhoneFromJson({reinterpret_cast<const char*>(data), size}, Phone{});
        const std::string text = PhoneToJson(phone);
        fuzz::Require(PhoneToJson(PhoneFromJson(text, Phone{})) == text);
    } catch (const std::invalid_argument&) {
        // refused, with the place
    }
    return 0;
}
