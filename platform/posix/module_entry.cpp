// Calls DllMain when the shared object is loaded and unloaded, on the thread that does so. Linked into the library, not
// into the stand-in. When the whole process ends, DllMain gets a reserved argument that is not null, as on Windows.
#include <dlfcn.h>
#include <windows.h>

#include "phn_platform_module.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD dwReason, LPVOID lpReserved);

// Defined by a program that is linked with the library and asks for prompt reads (phnnrv.hpp): its handset's port is
// opened before any code of its own has run.
extern "C" [[gnu::weak]] const unsigned phnnrv_prompt_reads;

namespace {

PhnModuleName moduleName{.name = "PHNNRV.dll", .module = nullptr, .file = nullptr, .next = nullptr, .isRefused = 0};

// A program that was linked with the library keeps it until the process ends.
bool isLinked;

// A constructor function cannot refuse the load as DllMain can. LoadLibraryA does it in its place; for a host that has
// used dlopen, or is linked with the library, the exports fail.
__attribute__((constructor)) void onLoad()
{
    // The names of a library that is being loaded at run time are not, or not yet, among the program's own.
    void* const program = dlopen(nullptr, RTLD_LAZY);
    isLinked = program && dlsym(program, "PHN_Startup");
    if (program)
        dlclose(program);
    if (!isLinked)
        PhnWatchProcessEnd();
    if (&phnnrv_prompt_reads)
        PhnAskForPromptReads();
    PhnModuleLoaded(&moduleName);
    moduleName.isRefused = !DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr);
}

__attribute__((destructor)) void onUnload()
{
    const bool isEnding = isLinked || PhnProcessIsEnding();
    DllMain(nullptr, DLL_PROCESS_DETACH, isEnding ? &isLinked : nullptr);
    PhnModuleUnloaded(&moduleName);
}

} // namespace
