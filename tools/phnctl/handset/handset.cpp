#include "phnctl/handset/handset.h"

#include "phnctl/text/error_names.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <iterator>

namespace phnctl {

void Handset::Check(PHN_ERROR code, const std::string& doing) const
{
    if (code == PHN_ERROR_NONE)
        return;
    throw Refusal(NetworkError(code).value_or(ErrorOf(code)), doing);
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

std::optional<ErrorText> Handset::NetworkError(PHN_ERROR code) const
{
    const std::string text = NetworkErrorText(code);
    if (text.empty())
        return std::nullopt;
    const std::size_t name = std::min(text.find_first_of(", "), text.size());
    const std::size_t meaning = std::min(text.find_first_not_of(", ", name), text.size());
    return ErrorText{code, Printable(text.substr(0, name)), Printable(text.substr(meaning)),
                     text.substr(name, meaning - name)};
}

} // namespace phnctl
