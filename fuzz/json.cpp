// Any file as JSON of the tool: labels, what it kept, what it wrote. It is refused, or written and read the same.
#include <stdexcept>
#include <string>

#include "fuzz/require.h"
#include "phnctl/text/json.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string text;
    try {
        const phnctl::Json json = phnctl::ParseJson(std::string(reinterpret_cast<const char*>(data), size));
        fuzz::Require(!json.Find("") || json.Object());
        text = phnctl::WriteJson(json);
    } catch (const std::runtime_error&) {
        return 0;
    }
    fuzz::Require(phnctl::WriteJson(phnctl::ParseJson(text)) == text);
    return 0;
}
