// Any bytes as a PDU for the tool's own reader: what it says is text, and each item lies in the PDU.
#include "fuzz/require.h"
#include "phnctl/messages/pdu.h"
#include "phnctl/text/text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const phnctl::Pdu pdu = phnctl::ReadPdu({data, size});
    for (const auto& text : {pdu.content.from, pdu.content.to, pdu.content.callback, pdu.content.text})
        fuzz::Require(!text || phnctl::IsUtf8(*text));
    for (const phnctl::PduItem& item : pdu.items)
        fuzz::Require(item.offset < size && item.data.size() <= size - item.offset && phnctl::IsUtf8(item.meaning));
    return 0;
}
