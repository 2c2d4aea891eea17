// The control lines that show or change the handset and its port.
// Used by the table of control lines.
#pragma once

#include "simulator/script/control_arguments.h"

namespace simulator {

ControlLine Show(Arguments& arguments);
ControlLine Set(Arguments& arguments);
ControlLine Flags(Arguments& arguments);
ControlLine DeliverMessage(Arguments& arguments);
ControlLine AddCall(Arguments& arguments);
ControlLine AddFault(Arguments& arguments);
ControlLine ListFaults(Arguments& arguments);
ControlLine ClearFaults(Arguments& arguments);
ControlLine Unplug(Arguments& arguments);
ControlLine Replug(Arguments& arguments);
ControlLine HangUp(Arguments& arguments);
ControlLine SetTrace(Arguments& arguments);
ControlLine Save(Arguments& arguments);
ControlLine Load(Arguments& arguments);

} // namespace simulator
