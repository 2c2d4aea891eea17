/* What the entry code of a module (module_entry.cpp) exchanges with the stand-in beyond Win32: the module's Windows
   name, whether its DllMain has refused to be loaded, what its program asks for, and whether the process is ending.
   DllMain then gets a reserved argument that is not null, as on Windows, and nothing is waited for. */
#pragma once

#include <minwindef.h>

PHN_PLATFORM_BEGIN

/* A module's Windows name, by which GetModuleHandleA finds it whatever its file is called. The record lies in the
   module itself: its address says which module is meant. The members between the first and the last are the stand-in's
   own; the record grows at its end. */
typedef struct PhnModuleName
{
    const char* name;
    HMODULE module;
    const char* file;
    struct PhnModuleName* next;
    int isRefused; /* not 0: LoadLibraryA is to fail */
} PhnModuleName;

WINBASEAPI void PhnModuleLoaded(PhnModuleName* module) PHN_WIN32_NAME(ModuleLoaded);
WINBASEAPI void PhnModuleUnloaded(PhnModuleName* module) PHN_WIN32_NAME(ModuleUnloaded);

/* Where the environment says nothing else, the registry's "Prompt Reads" is 1 from now on. */
WINBASEAPI void PhnAskForPromptReads(void) PHN_WIN32_NAME(AskForPromptReads);

/* To be called when a module is loaded into a running program; not for a module that the program was linked with. */
WINBASEAPI void PhnWatchProcessEnd(void) PHN_WIN32_NAME(WatchProcessEnd);

/* Not 0 once exit() has begun. Ask from a function in the module's fini section (__attribute__((destructor))). */
WINBASEAPI int PhnProcessIsEnding(void) PHN_WIN32_NAME(ProcessIsEnding);

PHN_PLATFORM_END
