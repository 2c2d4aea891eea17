// Modules. The module named PHNNRV.dll is the shared object libphnnrv.so; a path is taken as it is.
#pragma once

#include <minwinbase.h>

#define GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT 0x2
#define GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS 0x4

PHN_PLATFORM_BEGIN
WINBASEAPI HMODULE WINAPI GetModuleHandleA(LPCSTR lpModuleName) PHN_WIN32_NAME(GetModuleHandleA);
// Only with both flags: the module that the address lies in, without a reference to it.
WINBASEAPI BOOL WINAPI GetModuleHandleExA(DWORD dwFlags, LPCSTR lpModuleName, HMODULE* phModule)
    PHN_WIN32_NAME(GetModuleHandleExA);
WINBASEAPI DWORD WINAPI GetModuleFileNameA(HMODULE hModule, LPSTR lpFilename, DWORD nSize)
    PHN_WIN32_NAME(GetModuleFileNameA);
WINBASEAPI HMODULE WINAPI LoadLibraryA(LPCSTR lpLibFileName) PHN_WIN32_NAME(LoadLibraryA);
WINBASEAPI BOOL WINAPI FreeLibrary(HMODULE hLibModule) PHN_WIN32_NAME(FreeLibrary);
WINBASEAPI FARPROC WINAPI GetProcAddress(HMODULE hModule, LPCSTR lpProcName) PHN_WIN32_NAME(GetProcAddress);
PHN_PLATFORM_END
