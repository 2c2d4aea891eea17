// A host that sends the simulated handset anything: the first byte says on which port, and each field is what comes at
// once.
#include "fuzz/input.h"
#include "simulator/handset/session.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace simulator;
    static const Phone& phone = *new Phone(DefaultPhone());
    fuzz::Input input({data, size});
    Handset handset(phone);
    Session session(handset, input.Byte() & 1 ? PortKind::Modem : PortKind::Diagnostic);
    while (!input.IsOver())
        session.Receive(input.Field());
    return 0;
}
