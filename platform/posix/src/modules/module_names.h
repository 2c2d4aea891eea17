// The Windows names of the loaded modules that have told theirs (phn_platform_module.h). Asking for one takes no lock
// of the dynamic linker's: a thread asks while another, which waits for it, is unloading the module.
#pragma once

#include <string>

#include <windows.h>

namespace platform {

// The module of this name, found without regard to case; null if none is loaded. Of two, the first.
HMODULE NamedModule(const char* name);

// Whether the module's DllMain has refused to be loaded.
bool IsRefused(HMODULE handle);

// Whether this file lies in the folder of such a module.
bool IsBesideModule(const std::string& path);

} // namespace platform
