#include "phnctl/handset/log_setup.h"

#include "phnctl/text/failure.h"

namespace phnctl {

std::unique_ptr<LogSetup> SetUpLog(std::uint32_t)
{
    throw Failure(kUsage, "--log is not available on this system: set the value \"Logging Level\" of "
                          "HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk instead");
}

} // namespace phnctl
