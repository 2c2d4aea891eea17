#include "phnctl/commands/exporting.h"

#include "phnctl/cli/print.h"
#include "phnctl/commands/entries/commands.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "phnctl/text/text_file.h"

#include <fmt/format.h>

namespace phnctl {

namespace {

constexpr const char* kFormat = "--format";
constexpr const char* kCsv = "csv";

} // namespace

Argument ExportArgument()
{
    return {"FILE", "Where to; - for standard output", Count::One, {}};
}

std::vector<CommandOption> ExportOptions(const std::string& format)
{
    return {{kFormat, fmt::format("{}|{}", format, kCsv),
             fmt::format("What to write (default: what FILE ends in, else {})", format)},
            {kForce, "", "Replace files that exist"}};
}

bool WantsCsv(const Invocation& invocation, const std::string& format)
{
    const bool isCalledSo = PathOf(*invocation.Value("FILE")).extension() == ".csv";
    const std::string asked = invocation.Value(kFormat).value_or(isCalledSo ? kCsv : format);
    if (asked != format && asked != kCsv)
        throw Failure(kUsage, fmt::format("{} '{}': allowed are {} and {}", kFormat, Printable(asked), format, kCsv));
    return asked == kCsv;
}

void WriteExport(const Invocation& invocation, const std::string& text)
{
    const std::string file = *invocation.Value("FILE");
    if (file == "-")
        PrintFileText(text);
    else
        WriteText(PathOf(file), text, invocation.Has(kForce) ? Existing::Replace : Existing::Refuse);
}

void WriteExport(const Invocation& invocation, const std::string& text, std::size_t count, const std::string& one)
{
    const std::string file = *invocation.Value("FILE");
    WriteExport(invocation, text);
    if (file != "-")
        PrintDone(invocation.options, fmt::format("{} written to {}.", Counted(count, one), Printable(file)),
                  {{{"", "", {{"exported", "", count}}}}});
}

} // namespace phnctl
