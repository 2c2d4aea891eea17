#include "phnctl/print.h"

#include "system/system.h"

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

} // namespace phnctl
