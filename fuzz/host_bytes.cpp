// A host that sends the simulated handset anything. The first byte: 1 a modem port, 2 a handset with room for little, 4
// a trace, 8 its frames as well, 32 and above so many fields with faults; 16 alone: everything a hundred times over.
// Each field after that is what comes at once.
#include "fuzz/input.h"
#include "fuzz/require.h"
#include "simulator/handset/session.h"

#include <stdexcept>

namespace {

using namespace simulator;

// Its own texts have no room either.
Phone CrampedPhone()
{
    Phone phone = DefaultPhone();
    phone.limits.contacts = 2;
    phone.limits.messages = 3;
    phone.limits.skippedDigit = 1;
    phone.limits.nameLength = phone.limits.numberLength = phone.limits.emailLength = phone.limits.bodyLength = 4;
    phone.identity.info20.assign(40, 'x');
    phone.network.network26 = "\u0141\u00f3d\u017a " + phone.identity.info20;
    return phone;
}

void AddFault(Handset& handset, std::span<const std::uint8_t> text)
{
    try {
        handset.AddFault(std::string(text.begin(), text.end()));
    } catch (const std::invalid_argument&) {
        // none is added
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const Phone& phone = *new Phone(DefaultPhone());
    static const Phone& cramped = *new Phone(CrampedPhone());
    fuzz::Input input({data, size});
    const std::uint8_t bits = input.Byte();
    Handset handset(bits & 2 ? cramped : phone);
    if (bits & 4)
        handset.SetTrace([](std::string_view line) { fuzz::Require(line.find('\n') == line.npos); },
                         bits & 8 ? TraceDetail::Hex : TraceDetail::Decoded);
    for (int faults = bits >> 5; faults > 0; --faults)
        AddFault(handset, input.Field());
    Session session(handset, bits & 1 ? PortKind::Modem : PortKind::Diagnostic);
    while (!input.IsOver()) {
        const auto field = input.Field();
        for (int times = bits == 16 ? 100 : 1; times > 0; --times)
            session.Receive(field);
    }
    return 0;
}
