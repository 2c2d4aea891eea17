// The registry's file (PHNNRV_REGISTRY), read again when it has changed: written to, replaced by a rename, removed or
// made anew. That costs a look at an inotify descriptor, which uses within ten microseconds of it share: about the time
// in which a program opens, writes and closes a file. Where the file's directory cannot be watched, the file is read at
// every look. What is no regular file, or too large, counts as missing, and missing means empty.
#pragma once

#include <memory>

#include "registry_tree.h"

namespace platform {

// Puts the current registry in place of an earlier one, or of none; false if it is the same.
bool RenewRegistry(std::shared_ptr<const RegistryTree>& known);

} // namespace platform
