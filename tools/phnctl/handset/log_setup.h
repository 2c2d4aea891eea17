// Lets the library log for this run only, for --log: a private registry file with the wished level, over the user's.
// log_setup_registry.cpp has it; log_setup_none.cpp takes its place where the registry is Windows' own.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace phnctl {

class LogSetup
{
public:
    virtual ~LogSetup() = default;
    // The log file that this run wrote, beside the library or in the user's state folder; empty when it wrote none.
    virtual std::string LogFile(const std::string& libraryPath) const = 0;
};

// Call it before the library is loaded. Throws Failure.
std::unique_ptr<LogSetup> SetUpLog(std::uint32_t level);

} // namespace phnctl
