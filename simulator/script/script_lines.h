// The control lines that scripts are made of: waiting for the host, answering to what it does, judging it.
// Used by the table of control lines.
#pragma once

#include "simulator/script/control_arguments.h"

namespace simulator {

ControlLine Wait(Arguments& arguments);
ControlLine WaitFor(Arguments& arguments);
ControlLine After(Arguments& arguments);
ControlLine Every(Arguments& arguments);
ControlLine Expect(Arguments& arguments);
ControlLine ExpectNone(Arguments& arguments);

} // namespace simulator
