#include "disk_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "win32_call.h"

namespace platform {

DWORD DiskFile::Read(void* buffer, DWORD size, DWORD* done, OVERLAPPED* overlapped)
{
    if (overlapped)
        throw Win32Error{ERROR_NOT_SUPPORTED};
    ssize_t count = 0;
    do
        count = read(descriptor_.Get(), buffer, size);
    while (count < 0 && errno == EINTR);
    if (count < 0)
        ThrowErrno();
    *done = static_cast<DWORD>(count);
    return ERROR_SUCCESS;
}

// One write() unless the system takes less than all, as for a disk that becomes full; its error is then the next one's.
DWORD DiskFile::Write(const void* data, DWORD size, DWORD* done, OVERLAPPED* overlapped)
{
    if (overlapped)
        throw Win32Error{ERROR_NOT_SUPPORTED};
    const auto* bytes = static_cast<const unsigned char*>(data);
    for (*done = 0; *done < size;) {
        const ssize_t count = write(descriptor_.Get(), bytes + *done, size - *done);
        if (count > 0)
            *done += static_cast<DWORD>(count);
        else if (count < 0 && errno != EINTR)
            ThrowErrno();
    }
    return ERROR_SUCCESS;
}

LONGLONG DiskFile::Seek(LONGLONG distance, DWORD method)
{
    if (method > FILE_END)
        throw Win32Error{ERROR_INVALID_PARAMETER};
    static_assert(FILE_BEGIN == SEEK_SET && FILE_CURRENT == SEEK_CUR && FILE_END == SEEK_END);
    const off_t position = lseek(descriptor_.Get(), distance, static_cast<int>(method));
    if (position < 0 && errno == EINVAL)
        throw Win32Error{ERROR_NEGATIVE_SEEK};
    if (position < 0)
        ThrowErrno();
    return position;
}

LONGLONG DiskFile::Size() const
{
    struct stat status
    {
    };
    if (fstat(descriptor_.Get(), &status))
        ThrowErrno();
    return status.st_size;
}

} // namespace platform

using namespace platform;

DWORD WINAPI SetFilePointer(HANDLE hFile, LONG lDistanceToMove, PLONG lpDistanceToMoveHigh, DWORD dwMoveMethod)
{
    return Win32Call(Call::SetFilePointer, INVALID_SET_FILE_POINTER, [&] {
        const auto file = FromHandle<DiskFile>(hFile);
        LONGLONG distance = lDistanceToMove;
        if (lpDistanceToMoveHigh)
            distance = static_cast<LONGLONG>(*lpDistanceToMoveHigh) << 32 | static_cast<DWORD>(lDistanceToMove);
        const LONGLONG position = file->Seek(distance, dwMoveMethod);
        if (lpDistanceToMoveHigh)
            *lpDistanceToMoveHigh = static_cast<LONG>(position >> 32);
        SetLastError(ERROR_SUCCESS); // tells a position that looks like the failure value from a failure
        return static_cast<DWORD>(position);
    });
}

BOOL WINAPI SetFilePointerEx(HANDLE hFile, LARGE_INTEGER liDistanceToMove, PLARGE_INTEGER lpNewFilePointer,
                             DWORD dwMoveMethod)
{
    return Win32Call(Call::SetFilePointerEx, FALSE, [&] {
        const LONGLONG position = FromHandle<DiskFile>(hFile)->Seek(liDistanceToMove.QuadPart, dwMoveMethod);
        if (lpNewFilePointer)
            lpNewFilePointer->QuadPart = position;
        return TRUE;
    });
}

BOOL WINAPI GetFileSizeEx(HANDLE hFile, PLARGE_INTEGER lpFileSize)
{
    return Win32Call(Call::GetFileSizeEx, FALSE, [&] {
        lpFileSize->QuadPart = FromHandle<DiskFile>(hFile)->Size();
        return TRUE;
    });
}
