// The registry, read only: a text file, and the serial-port map made from the device directory.
#pragma once

#include <minwinbase.h>

#define HKEY_LOCAL_MACHINE ((HKEY)(ULONG_PTR)0x80000002u)

typedef LONG LSTATUS;

PHN_PLATFORM_BEGIN
WINBASEAPI LSTATUS WINAPI RegOpenKeyExA(HKEY hKey, LPCSTR lpSubKey, DWORD ulOptions, DWORD samDesired, PHKEY phkResult)
    PHN_WIN32_NAME(RegOpenKeyExA);
WINBASEAPI LSTATUS WINAPI RegQueryValueExA(HKEY hKey, LPCSTR lpValueName, LPDWORD lpReserved, LPDWORD lpType,
                                           LPBYTE lpData, LPDWORD lpcbData) PHN_WIN32_NAME(RegQueryValueExA);
WINBASEAPI LSTATUS WINAPI RegEnumValueA(HKEY hKey, DWORD dwIndex, LPSTR lpValueName, LPDWORD lpcchValueName,
                                        LPDWORD lpReserved, LPDWORD lpType, LPBYTE lpData, LPDWORD lpcbData)
    PHN_WIN32_NAME(RegEnumValueA);
WINBASEAPI LSTATUS WINAPI RegCloseKey(HKEY hKey) PHN_WIN32_NAME(RegCloseKey);
PHN_PLATFORM_END
