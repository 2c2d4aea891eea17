// The level of the library's log by name or number. Used by the command line; the meaning of the bits is the log's.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace phnctl {

// Throws Failure(kUsage) that says what is allowed.
std::uint32_t ParseLogLevel(const std::string& text);

// off, error, comment, all
std::vector<std::string> LogLevelNames();

} // namespace phnctl
