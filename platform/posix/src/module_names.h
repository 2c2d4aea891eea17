// The Windows names of the loaded modules that have told theirs (phn_platform_module.h).
#pragma once

#include <string>

namespace platform {

// An address in the module of this name, found without regard to case; null if none is loaded. Of two, the first.
const void* AddressInModule(const char* name);

// Whether this file lies in the folder of such a module.
bool IsBesideModule(const std::string& path);

} // namespace platform
