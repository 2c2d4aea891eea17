// The messages commands that have files of their own. Put together in messages.cpp.
#pragma once

#include "phnctl/cli/command.h"

#include <vector>

namespace phnctl {

// delete and clear
std::vector<Command> DeletingCommands();

// decode and encode, which explain and build PDUs without a handset
std::vector<Command> WorkbenchCommands();

} // namespace phnctl
