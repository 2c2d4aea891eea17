// phnctl error: what a code of the library means.
#include "phnctl/cli/print.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/text/error_names.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/number.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <cctype>
#include <fmt/format.h>

namespace phnctl {

namespace {

constexpr const char* kAllowed = "allowed are the library's own codes (0 to 306, and from 1032 up those that a handset "
                                 "refuses with), the network errors 1000 to 1031, 2000 to 2005 and 3000 to 3016, and "
                                 "the names of all these";

std::string InCapitals(std::string name)
{
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::toupper(c); });
    return name;
}

int Error(const Invocation& invocation)
{
    const std::string given = *invocation.Value("CODE");
    const auto number = ParseNumber(given, 0x7FFFFFFF);
    const auto error = number ? OwnError(static_cast<PHN_ERROR>(*number)) : OwnError(InCapitals(given));
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
             "'phnctl status' tells why the last call ended. Needs no handset.\n\n"
             "Examples:\n"
             "  phnctl error 1025\n"
             "  phnctl error 203\n"
             "  phnctl error PHN_ERROR_FAILED\n",
             {{"CODE", "The code, or its name", Count::One, {}}},
             Error}};
}

} // namespace phnctl
