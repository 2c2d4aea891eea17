// Any file as a script of control lines for phnsim; what they set, show and the faults they add, a handset takes or
// refuses. The lines are not run: some write files.
#include <stdexcept>
#include <string>
#include <string_view>

#include "fuzz/require.h"
#include "simulator/handset/handset.h"
#include "simulator/script/control.h"

namespace {

using namespace simulator;

template <typename Action>
void Try(Action&& action)
{
    try {
        action();
    } catch (const std::invalid_argument&) {
        // what a line that makes no sense comes to
    }
}

void TakeLine(Handset& handset, std::string_view line, const Place& place)
{
    Try([&] { ParseControlLine(line, place); });
    if (line.starts_with("fault "))
        Try([&] { handset.AddFault(line.substr(6)); });
    if (line.starts_with("show "))
        Try([&] { handset.Show(line.substr(5)); });
    const std::size_t value = line.find(' ', 4);
    if (line.starts_with("set ") && value != line.npos)
        Try([&] { handset.Set(line.substr(4, value - 4), line.substr(value + 1)); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    Handset handset{Phone{}};
    for (Place place{"script", 1, true}; !rest.empty(); ++place.line) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        TakeLine(handset, line, place);
    }
    for (const Fault& fault : handset.Faults()) // is listed as it may be added
        fuzz::Require(ToString(ParseFault(ToString(fault))) == ToString(fault));
    return 0;
}
