/* What the entry code of a module (module_entry.cpp) needs from the stand-in beyond Win32: whether the process is
   ending. DllMain then gets a reserved argument that is not null, as on Windows, and nothing is waited for. Ask from a
   function in the module's fini section (__attribute__((destructor))): it runs after the flag is set. */
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

/* Not 0 once exit() has begun. */
__attribute__((visibility("default"))) int PhnProcessIsEnding(void);

#ifdef __cplusplus
}
#endif
