// phnctl error: what a code of the library means.
#include "phnctl/command.h"
#include "phnctl/error_names.h"
#include "phnctl/failure.h"
#include "phnctl/number.h"
#include "phnctl/print.h"
#include "phnctl/session.h"
#include "phnctl/text.h"

#include <fmt/format.h>

namespace phnctl {

namespace {

int Answer(const Options& options, PHN_ERROR code, const std::string& text)
{
    PrintDone(options, Printable(text), {{{"", "", {{"code", "Code", code}, {"text", "Text", text}}}}});
    return kDone;
}

// The library tells these texts only while a handset is served; a simulated one will do.
std::string NetworkError(PHN_ERROR code, Options options)
{
    options.simulator = HasEmbeddedHandset();
    std::string text;
    WithHandset(options, [&](const Handset& handset) { text = handset.NetworkErrorText(code); });
    return text;
}

int Error(const Invocation& invocation)
{
    const std::string given = *invocation.Value("CODE");
    const auto number = ParseNumber(given, 0x7FFFFFFF);
    if (!number)
        throw Failure(kUsage,
                      fmt::format("'{}' is not a code; allowed: a number, such as 203 or 1025", Printable(given)));
    const auto code = static_cast<PHN_ERROR>(*number);
    if (const auto own = OwnError(code))
        return Answer(invocation.options, code, *own);
    const std::string network = NetworkError(code, invocation.options);
    if (network.empty())
        throw Failure(kUsage, fmt::format("{} is not a code; allowed: the library's own (0 to 306, and from 1032 up "
                                          "those that a handset refuses with) and the network errors 1000 to 1031, "
                                          "2000 to 2005 and 3000 to 3016",
                                          code));
    return Answer(invocation.options, code, fmt::format("{} {}", code, network));
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
             "  phnctl error 203\n",
             {{"CODE", "The code", Count::One, {}}},
             Error}};
}

} // namespace phnctl
