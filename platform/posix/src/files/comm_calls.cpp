#include "base/win32_call.h"
#include "files/serial_port.h"

using namespace platform;

BOOL WINAPI SetCommTimeouts(HANDLE hFile, LPCOMMTIMEOUTS lpCommTimeouts)
{
    return Win32Call(Call::SetCommTimeouts, FALSE, [&] {
        if (lpCommTimeouts->ReadIntervalTimeout == MAXDWORD) // a read that takes what is there, or its first bytes
            throw Win32Error{ERROR_NOT_SUPPORTED};
        FromHandle<SerialPort>(hFile)->SetTimeouts(*lpCommTimeouts);
        return TRUE;
    });
}

BOOL WINAPI PurgeComm(HANDLE hFile, DWORD dwFlags)
{
    return Win32Call(Call::PurgeComm, FALSE, [&] {
        const auto port = FromHandle<SerialPort>(hFile);
        if (dwFlags == 0 || dwFlags > (PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR))
            throw Win32Error{ERROR_INVALID_PARAMETER};
        port->Purge(dwFlags);
        return TRUE;
    });
}

// A terminal keeps no line errors.
BOOL WINAPI ClearCommError(HANDLE hFile, LPDWORD lpErrors, LPCOMSTAT lpStat)
{
    return Win32Call(Call::ClearCommError, FALSE, [&] {
        const COMSTAT status = FromHandle<SerialPort>(hFile)->GetStatus();
        if (lpErrors)
            *lpErrors = 0;
        if (lpStat)
            *lpStat = status;
        return TRUE;
    });
}
