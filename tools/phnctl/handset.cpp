#include "phnctl/handset.h"

#include "phnctl/error_names.h"
#include "phnctl/failure.h"
#include "phnctl/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>

namespace phnctl {

void Handset::Check(PHN_ERROR code, const std::string& doing) const
{
    if (code == PHN_ERROR_NONE)
        return;
    const std::string network = NetworkErrorText(code);
    const std::string what = network.empty() ? Explain(code) : fmt::format("{} {}", code, Printable(network));
    throw Refusal(code, fmt::format("{} (while {})", what, doing));
}

std::string Handset::NetworkErrorText(PHN_ERROR code) const
{
    char text[256] = {};
    if (m_library.GetNetworkErrorString(static_cast<std::int32_t>(code), text, sizeof text) != PHN_ERROR_NONE)
        return {};
    // Name and text are joined by a comma, or by a tab.
    std::replace(std::begin(text), std::end(text), '\t', ' ');
    return FromHandset(text);
}

} // namespace phnctl
