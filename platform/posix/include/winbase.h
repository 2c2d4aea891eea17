// Serial communication: time-outs, purging, and the state of a port.
#pragma once

#include <minwinbase.h>

#define PURGE_TXABORT 0x1u
#define PURGE_RXABORT 0x2u
#define PURGE_TXCLEAR 0x4u
#define PURGE_RXCLEAR 0x8u

// All in milliseconds. A read ends after ReadIntervalTimeout without a byte, counted from the last one, or after
// ReadTotalTimeoutMultiplier * bytes + ReadTotalTimeoutConstant; 0 means no such time-out.
typedef struct _COMMTIMEOUTS
{
    DWORD ReadIntervalTimeout;
    DWORD ReadTotalTimeoutMultiplier;
    DWORD ReadTotalTimeoutConstant;
    DWORD WriteTotalTimeoutMultiplier;
    DWORD WriteTotalTimeoutConstant;
} COMMTIMEOUTS, *LPCOMMTIMEOUTS;

typedef struct _COMSTAT
{
    DWORD fCtsHold : 1;
    DWORD fDsrHold : 1;
    DWORD fRlsdHold : 1;
    DWORD fXoffHold : 1;
    DWORD fXoffSent : 1;
    DWORD fEof : 1;
    DWORD fTxim : 1;
    DWORD fReserved : 25;
    DWORD cbInQue;
    DWORD cbOutQue;
} COMSTAT, *LPCOMSTAT;

PHN_PLATFORM_BEGIN
WINBASEAPI BOOL WINAPI SetCommTimeouts(HANDLE hFile, LPCOMMTIMEOUTS lpCommTimeouts) PHN_WIN32_NAME(SetCommTimeouts);
WINBASEAPI BOOL WINAPI PurgeComm(HANDLE hFile, DWORD dwFlags) PHN_WIN32_NAME(PurgeComm);
WINBASEAPI BOOL WINAPI ClearCommError(HANDLE hFile, LPDWORD lpErrors, LPCOMSTAT lpStat) PHN_WIN32_NAME(ClearCommError);
PHN_PLATFORM_END
