#include "phnctl/cli/print.h"

#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "system/system.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/format.h>

namespace phnctl {

void Print(const Options& options, const Report& report)
{
    if (options.json)
        fmt::print("{}\n", WriteJson(ToJson(report)));
    else
        fmt::print("{}", ToText(report, host::TerminalWidth(stdout)));
}

void PrintDone(const Options& options, const std::string& sentence, const Report& report)
{
    if (options.json)
        Print(options, report);
    else
        fmt::print("{}\n", sentence);
}

void PrintFileText(const std::string& text)
{
    fmt::print("{}", host::TerminalWidth(stdout) == 0 ? text : PrintableLines(text));
}

void FlushOutput()
{
    if (std::fflush(stdout) != 0)
        throw Failure(kRefused, fmt::format("the answer cannot be written: {}", std::strerror(errno)));
    if (std::ferror(stdout))
        throw Failure(kRefused, "a part of the answer could not be written");
}

} // namespace phnctl
