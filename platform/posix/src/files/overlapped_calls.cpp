#include "base/win32_call.h"
#include "files/serial_port.h"

using namespace platform;

BOOL WINAPI GetOverlappedResult(HANDLE hFile, LPOVERLAPPED lpOverlapped, LPDWORD lpNumberOfBytesTransferred, BOOL bWait)
{
    return Win32Call(Call::GetOverlappedResult, FALSE, [&] {
        FromHandle<File>(hFile);
        Lock lock = TakeBaseLock();
        const auto isOver = [&] { return lpOverlapped->Internal != STATUS_PENDING; };
        if (!isOver() && !bWait)
            throw Win32Error{ERROR_IO_INCOMPLETE};
        BlockUntil(lock, lpOverlapped, isOver);
        *lpNumberOfBytesTransferred = static_cast<DWORD>(lpOverlapped->InternalHigh);
        if (lpOverlapped->Internal != ERROR_SUCCESS)
            throw Win32Error{static_cast<DWORD>(lpOverlapped->Internal)};
        return TRUE;
    });
}

BOOL WINAPI CancelIoEx(HANDLE hFile, LPOVERLAPPED lpOverlapped)
{
    return Win32Call(Call::CancelIoEx, FALSE, [&] {
        const auto isMeant = [&](const SerialOperation& operation) {
            return !lpOverlapped || operation.record == lpOverlapped;
        };
        const auto port = std::dynamic_pointer_cast<SerialPort>(FromHandle<File>(hFile));
        if (!port || !port->Cancel(TakeBaseLock(), isMeant))
            throw Win32Error{ERROR_NOT_FOUND};
        return TRUE;
    });
}

BOOL WINAPI CancelSynchronousIo(HANDLE hThread)
{
    return Win32Call(Call::CancelSynchronousIo, FALSE, [&] {
        const auto thread = FromHandle<ThreadRecord>(hThread);
        const Lock lock = TakeBaseLock();
        const auto isMeant = [&](const SerialOperation& operation) { return operation.thread == thread; };
        if (!thread->blockedIn || !thread->blockedIn->Cancel(lock, isMeant))
            throw Win32Error{ERROR_NOT_FOUND};
        return TRUE;
    });
}
