#include "phnctl/handset/tool_run.h"

#include "phnctl/text/failure.h"

namespace phnctl {

namespace {

[[noreturn]] void Refuse()
{
    throw Failure(kUsage, "this build cannot run itself");
}

} // namespace

bool CanRunTool()
{
    return false;
}

ToolRun RunTool(const std::vector<std::string>&)
{
    Refuse();
}

ToolRun RunToolRecorded(const std::vector<std::string>&, std::vector<std::string>&)
{
    Refuse();
}

std::string SystemName()
{
    return "";
}

} // namespace phnctl
