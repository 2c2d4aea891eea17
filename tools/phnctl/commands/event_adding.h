// events add: an event that is typed on the command line. Put together with the others in events.cpp.
#pragma once

#include "phnctl/cli/command.h"

namespace phnctl {

Command EventAddCommand();

} // namespace phnctl
