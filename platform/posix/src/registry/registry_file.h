// The registry's files (PHNNRV_REGISTRY, parted by colons; a later one holds over an earlier one), read again when one
// has changed: written to, replaced by a rename, removed or made anew. That costs a look at an inotify descriptor each,
// which uses within ten microseconds of it share: about the time in which a program opens, writes and closes a file.
// Where a file's directory cannot be watched, the files are read at every look. A missing file means an empty one.
// PHNNRV_CHECK_HOST and PHNNRV_PROMPT_READS add a value each to them; PhnAskForPromptReads stands in for the latter.
#pragma once

#include <memory>

#include "registry/registry_tree.h"

namespace platform {

struct Registry
{
    RegistryTree keys;
    // What a key that is not there is answered with: ERROR_CANTREAD where a file cannot be read, is no regular one or
    // too large, ERROR_BADDB where one is of another kind, so that the key may be missing because of it.
    DWORD missing = ERROR_FILE_NOT_FOUND;
};

// Puts the current registry in place of an earlier one, or of none; false if it is the same.
bool RenewRegistry(std::shared_ptr<const Registry>& known);

} // namespace platform
