// Calls DllMain when the shared object is loaded and unloaded, on the thread that does so. Linked into the library, not
// into the stand-in. When the whole process ends, DllMain gets a reserved argument that is not null, as on Windows.
#include <windows.h>

#include "phn_platform_module.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD dwReason, LPVOID lpReserved);

namespace {

// A constructor function cannot refuse the load as DllMain can: after a failed attach the exports find no instance.
__attribute__((constructor)) void onLoad()
{
    DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr);
}

__attribute__((destructor)) void onUnload()
{
    static int ending;
    DllMain(nullptr, DLL_PROCESS_DETACH, PhnProcessIsEnding() ? &ending : nullptr);
}

} // namespace
