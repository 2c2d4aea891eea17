#include "files/disk_file.h"

#include <unistd.h>

#include <cerrno>

#include "base/win32_call.h"

namespace platform {

// Nobody reads back what a log holds.
DWORD DiskFile::Read(void*, DWORD, DWORD*, OVERLAPPED*)
{
    throw Win32Error{ERROR_NOT_SUPPORTED};
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

} // namespace platform
