// The beginning and the end of the library's service of a handset: what PHN_Startup and PHN_Shutdown do behind the
// exports' boundary. Callable on any host thread; on the thread that loaded the library, the wait for a port also
// dispatches the device window's messages.
#pragma once

#include "phnnrv.h"

// Waits for a port (300 times 50 ms), greets the handset, creates the service objects and refuses listed models.
PHN_ERROR Startup();

// Says goodbye to the handset and deletes the service objects. The port stays open.
PHN_ERROR Shutdown();

// Dispatches at most one pending message of the device window, if the calling thread has one.
void PumpDeviceWindow();
