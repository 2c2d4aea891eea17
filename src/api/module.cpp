// The library's entry point, on every system. When the process ends with the library loaded (the reserved argument is
// not null), the other threads are already gone: nothing is waited for, and nothing is freed.
#include <windows.h>

#include "api/calder_app.h"

namespace {

constinit CCalderApp s_App;

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD dwReason, LPVOID lpReserved)
{
    if (dwReason == DLL_PROCESS_ATTACH)
        return s_App.InitInstance();
    if (dwReason == DLL_PROCESS_DETACH && !lpReserved)
        s_App.ExitInstance();
    return TRUE;
}
