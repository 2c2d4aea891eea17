#include "base/win32_call.h"
#include "files/file.h"

using namespace platform;

namespace {

// The frame of ReadFile and WriteFile. The count is set to zero first, as Windows does.
template <typename Transfer>
BOOL RunTransfer(Call call, HANDLE handle, const void* buffer, DWORD size, DWORD* count, OVERLAPPED* overlapped,
                 Transfer&& transfer)
{
    DWORD pending = ERROR_SUCCESS;
    const BOOL over = Win32Call(call, FALSE, [&] {
        DWORD done = 0;
        if (count)
            *count = 0;
        if (!count && !overlapped)
            throw Win32Error{ERROR_INVALID_PARAMETER};
        const auto file = FromHandle<File>(handle);
        if (!buffer && size > 0)
            throw Win32Error{ERROR_NOACCESS};
        pending = transfer(*file, &done);
        if (count)
            *count = done;
        return pending == ERROR_SUCCESS ? TRUE : FALSE;
    });
    if (pending != ERROR_SUCCESS)
        SetLastError(pending);
    return over;
}

} // namespace

HANDLE WINAPI CreateFileA(LPCSTR lpFileName, DWORD dwDesiredAccess, DWORD, LPSECURITY_ATTRIBUTES,
                          DWORD dwCreationDisposition, DWORD dwFlagsAndAttributes, HANDLE)
{
    return Win32Call(Call::CreateFileA, INVALID_HANDLE_VALUE, [&] {
        return NewHandle(OpenFile(lpFileName, dwDesiredAccess, dwCreationDisposition, dwFlagsAndAttributes));
    });
}

BOOL WINAPI ReadFile(HANDLE hFile, LPVOID lpBuffer, DWORD nNumberOfBytesToRead, LPDWORD lpNumberOfBytesRead,
                     LPOVERLAPPED lpOverlapped)
{
    return RunTransfer(
        Call::ReadFile, hFile, lpBuffer, nNumberOfBytesToRead, lpNumberOfBytesRead, lpOverlapped,
        [&](File& file, DWORD* done) { return file.Read(lpBuffer, nNumberOfBytesToRead, done, lpOverlapped); });
}

BOOL WINAPI WriteFile(HANDLE hFile, LPCVOID lpBuffer, DWORD nNumberOfBytesToWrite, LPDWORD lpNumberOfBytesWritten,
                      LPOVERLAPPED lpOverlapped)
{
    return RunTransfer(
        Call::WriteFile, hFile, lpBuffer, nNumberOfBytesToWrite, lpNumberOfBytesWritten, lpOverlapped,
        [&](File& file, DWORD* done) { return file.Write(lpBuffer, nNumberOfBytesToWrite, done, lpOverlapped); });
}
