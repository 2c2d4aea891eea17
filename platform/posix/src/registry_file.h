// The registry's file (PHNNRV_REGISTRY), read again when it has changed: written to, replaced by a rename, removed or
// made anew. That costs a look at an inotify descriptor, which uses within four microseconds of it share: no program
// opens, writes and closes a file in less. Where the file's directory cannot be watched, the file is read at every use.
// What is no regular file, or too large, counts as missing, and missing means empty.
#pragma once

#include <memory>

#include "registry_tree.h"

namespace platform {

std::shared_ptr<const RegistryTree> CurrentRegistry();

} // namespace platform
