#include "link/sync.h"

CCriticalSection g_csCommand;
HANDLE g_evStop = nullptr;
