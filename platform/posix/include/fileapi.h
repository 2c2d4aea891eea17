// Files and serial ports. A name that is an entry of the device directory opens a terminal as a port; any other is an
// ordinary file.
#pragma once

#include <minwinbase.h>

#define OPEN_EXISTING 3
#define OPEN_ALWAYS 4
#define FILE_FLAG_OVERLAPPED 0x40000000u

PHN_PLATFORM_BEGIN
WINBASEAPI HANDLE WINAPI CreateFileA(LPCSTR lpFileName, DWORD dwDesiredAccess, DWORD dwShareMode,
                                     LPSECURITY_ATTRIBUTES lpSecurityAttributes, DWORD dwCreationDisposition,
                                     DWORD dwFlagsAndAttributes, HANDLE hTemplateFile) PHN_WIN32_NAME(CreateFileA);
WINBASEAPI BOOL WINAPI ReadFile(HANDLE hFile, LPVOID lpBuffer, DWORD nNumberOfBytesToRead, LPDWORD lpNumberOfBytesRead,
                                LPOVERLAPPED lpOverlapped) PHN_WIN32_NAME(ReadFile);
WINBASEAPI BOOL WINAPI WriteFile(HANDLE hFile, LPCVOID lpBuffer, DWORD nNumberOfBytesToWrite,
                                 LPDWORD lpNumberOfBytesWritten, LPOVERLAPPED lpOverlapped) PHN_WIN32_NAME(WriteFile);
PHN_PLATFORM_END
