// The three mappings from the handset's codes to the host's error codes. Pure functions, used by every service.
#pragma once

#include <windows.h>

#include "phnnrv.h"

// A reply header's wStatus; PHN_ERROR_FAILED for a value that has no code. Not for 0.
PHN_ERROR MapReplyStatus(DWORD dwStatus);

// A reply record's dwResult; PHN_ERROR_FAILED for a value that has no code.
PHN_ERROR MapDeviceResult(DWORD dwResult);

// The reason for which the last call ended; PHN_ERROR_NONE for a value that has no code.
PHN_ERROR MapCallEndReason(DWORD dwReason);
