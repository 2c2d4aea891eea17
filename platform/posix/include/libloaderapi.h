// Modules. The module named PHNNRV.dll is the shared object libphnnrv.so; a path is taken as it is.
#pragma once

#include <minwinbase.h>

#define GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT 0x2
#define GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS 0x4

PHN_PLATFORM_BEGIN
WINBASEAPI HMODULE WINAPI GetModuleHandleA(LPCSTR lpModuleName);
// Only with both flags: the module that the address lies in, without a reference to it.
WINBASEAPI BOOL WINAPI GetModuleHandleExA(DWORD dwFlags, LPCSTR lpModuleName, HMODULE* phModule);
WINBASEAPI DWORD WINAPI GetModuleFileNameA(HMODULE hModule, LPSTR lpFilename, DWORD nSize);
WINBASEAPI HMODULE WINAPI LoadLibraryA(LPCSTR lpLibFileName);
WINBASEAPI BOOL WINAPI FreeLibrary(HMODULE hLibModule);
WINBASEAPI FARPROC WINAPI GetProcAddress(HMODULE hModule, LPCSTR lpProcName);
PHN_PLATFORM_END
