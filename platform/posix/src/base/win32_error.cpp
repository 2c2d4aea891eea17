#include "base/win32_error.h"

#include <cerrno>

namespace platform {
namespace {

thread_local DWORD lastError = ERROR_SUCCESS;

} // namespace

DWORD ErrorFromErrno(int number)
{
    switch (number) {
    case ENOENT:
    case ENODEV:
    case ENXIO:
        return ERROR_FILE_NOT_FOUND;
    case ENOTDIR:
        return ERROR_PATH_NOT_FOUND;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case ETXTBSY:
        return ERROR_ACCESS_DENIED;
    case EBUSY:
        return ERROR_BUSY;
    case ELOOP:
        return ERROR_CANT_RESOLVE_FILENAME;
    case ENAMETOOLONG:
        return ERROR_FILENAME_EXCED_RANGE;
    case EMFILE:
    case ENFILE:
        return ERROR_TOO_MANY_OPEN_FILES;
    case ENOMEM:
    case EAGAIN:
        return ERROR_NOT_ENOUGH_MEMORY;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return ERROR_DISK_FULL;
    case EBADF:
        return ERROR_ACCESS_DENIED; // the descriptor is ours: it was opened without this kind of access
    case EFAULT:
        return ERROR_NOACCESS;
    case EINVAL:
        return ERROR_INVALID_PARAMETER;
    case ENOTTY:
        return ERROR_INVALID_FUNCTION;
    default:
        return ERROR_GEN_FAILURE;
    }
}

void ThrowErrno()
{
    throw Win32Error{ErrorFromErrno(errno)};
}

} // namespace platform

DWORD WINAPI GetLastError()
{
    return platform::lastError;
}

void WINAPI SetLastError(DWORD dwErrCode)
{
    platform::lastError = dwErrCode;
}
