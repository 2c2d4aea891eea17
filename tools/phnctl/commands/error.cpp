// phnctl error: what a code of the library means.
#include "phnctl/cli/print.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/handset/session.h"
#include "phnctl/text/error_names.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/number.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <cctype>
#include <fmt/format.h>
#include <functional>
#include <iterator>

namespace phnctl {

namespace {

// Where the network errors lie, both ends included. The library tells their texts.
constexpr std::pair<PHN_ERROR, PHN_ERROR> kNetworkErrors[] = {
    {PHN_NETWORK_ERROR_1X_CO_NO_SERVICE, PHN_NETWORK_ERROR_1X_E911_GPS_FIX},
    {PHN_NETWORK_ERROR_WCDMA_NO_SERVICE, PHN_NETWORK_ERROR_WCDMA_USER_DISCONNECTED},
    {PHN_NETWORK_ERROR_EVDO_CO_NO_SERVICE, PHN_NETWORK_ERROR_EVDO_GPS_FIX}};
constexpr const char* kNetworkErrorPrefix = "PHN_NETWORK_ERROR_";

constexpr const char* kAllowed = "allowed are the library's own codes (0 to 306, and from 1032 up those that a handset "
                                 "refuses with), the network errors 1000 to 1031, 2000 to 2005 and 3000 to 3016, and "
                                 "the names of all these";

// The first network error that is `wanted`. The library tells of them only while a handset is served; a simulated one
// will do.
std::optional<ErrorText> FindNetworkError(Options options, const std::function<bool(const ErrorText&)>& wanted)
{
    options.simulator = HasEmbeddedHandset();
    std::optional<ErrorText> found;
    WithHandset(options, [&](const Handset& handset) {
        for (const auto& [first, last] : kNetworkErrors)
            for (PHN_ERROR code = first; code <= last && !found; ++code)
                if (const auto error = handset.NetworkError(code); error && wanted(*error))
                    found = error;
    });
    return found;
}

std::optional<ErrorText> ByCode(PHN_ERROR code, const Options& options)
{
    if (auto own = OwnError(code))
        return own;
    const bool isNetworkError =
        std::any_of(std::begin(kNetworkErrors), std::end(kNetworkErrors),
                    [&](const auto& range) { return code >= range.first && code <= range.second; });
    return isNetworkError ? FindNetworkError(options, [&](const ErrorText& error) { return error.code == code; })
                          : std::nullopt;
}

std::optional<ErrorText> ByName(std::string name, const Options& options)
{
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::toupper(c); });
    if (name.starts_with(kNetworkErrorPrefix))
        return FindNetworkError(options, [&](const ErrorText& error) { return error.name == name; });
    return OwnError(name);
}

int Error(const Invocation& invocation)
{
    const std::string given = *invocation.Value("CODE");
    const auto number = ParseNumber(given, 0x7FFFFFFF);
    const auto error =
        number ? ByCode(static_cast<PHN_ERROR>(*number), invocation.options) : ByName(given, invocation.options);
    if (!error)
        throw Failure(kUsage, fmt::format("'{}' is not a code; {}", Printable(given), kAllowed));
    PrintDone(
        invocation.options, ToString(*error),
        {{{"", "", {{"code", "Code", error->code}, {"name", "Name", error->name}, {"text", "Text", error->meaning}}}}});
    return kDone;
}

} // namespace

std::vector<Command> ErrorCommands()
{
    return {{"error",
             "Show the text of an error code",
             "Knows the library's own codes (0 to 306) and its network errors (1000 and up), with which\n"
             "'phnctl status' tells why the last call ended.\n\n"
             "Examples:\n"
             "  phnctl error 1025\n"
             "  phnctl error 203\n"
             "  phnctl error PHN_ERROR_FAILED\n",
             {{"CODE", "The code, or its name", Count::One, {}}},
             Error}};
}

} // namespace phnctl
