#include "phnctl/cli/log_level.h"

#include "phnctl/text/failure.h"
#include "phnctl/text/number.h"
#include "phnctl/text/text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace phnctl {

namespace {

struct NamedLevel
{
    const char* name;
    std::uint32_t value;
};

// Bits 0 to 7 select the level (2 comment, 4 error), bits 8 to 19 the category.
constexpr NamedLevel kLevels[] = {{"off", 0}, {"error", 0xFFF04}, {"comment", 0xFFF06}, {"all", 0xFFFFF}};

} // namespace

std::uint32_t ParseLogLevel(const std::string& text)
{
    for (const NamedLevel& level : kLevels)
        if (text == level.name)
            return level.value;
    if (const auto number = ParseNumber(text, 0xFFFFFFFF))
        return static_cast<std::uint32_t>(*number);
    throw Failure(kUsage, fmt::format("--log: '{}' is not a level; allowed: {}, or a number such as 0xFFF04",
                                      Printable(text), fmt::join(LogLevelNames(), ", ")));
}

std::vector<std::string> LogLevelNames()
{
    std::vector<std::string> names;
    for (const NamedLevel& level : kLevels)
        names.emplace_back(level.name);
    return names;
}

} // namespace phnctl
