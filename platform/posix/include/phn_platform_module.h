/* What the entry code of a module (module_entry.cpp) needs from the stand-in beyond Win32: whether the process is
   ending. DllMain then gets a reserved argument that is not null, as on Windows, and nothing is waited for. */
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

/* To be called when a module is loaded into a running program; not for a module that the program was linked with. */
__attribute__((visibility("default"))) void PhnWatchProcessEnd(void);

/* Not 0 once exit() has begun. Ask from a function in the module's fini section (__attribute__((destructor))). */
__attribute__((visibility("default"))) int PhnProcessIsEnding(void);

#ifdef __cplusplus
}
#endif
