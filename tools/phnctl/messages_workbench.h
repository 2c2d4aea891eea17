// messages decode and messages encode: PDUs explained and built, without a handset. Part of the messages commands.
#pragma once

#include "phnctl/command.h"

#include <vector>

namespace phnctl {

std::vector<Command> WorkbenchCommands();

} // namespace phnctl
