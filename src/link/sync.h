// The process-wide objects that every exchange meets. Plain records at namespace scope: both are made when the library
// is loaded and gone when it is unloaded.
#pragma once

#include <windows.h>

#include "common/lock.h"

// Held across one write and read, so that a reply cannot be taken by the wrong caller. Re-entrant.
extern CCriticalSection g_csCommand;

// Manual-reset; set once, at unload. Ends every wait of the link. Null outside of a loaded library.
extern HANDLE g_evStop;
