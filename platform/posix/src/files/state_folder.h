// Where a file goes that a program without rights would create beside a library of the system's: the user's state
// folder, one of the XDG base directories. Windows has such a place as well (its VirtualStore).
#pragma once

#include <string>

namespace platform {

// The file of this name in $XDG_STATE_HOME/phnnrv, ~/.local/state/phnnrv without that variable. Makes the folder,
// readable by its owner only. Empty where the user has none.
std::string FileInStateFolder(const std::string& path);

} // namespace platform
