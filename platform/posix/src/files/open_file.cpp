#include <dirent.h>
#include <fcntl.h>
#include <strings.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "base/win32_call.h"
#include "devices/device_directory.h"
#include "files/disk_file.h"
#include "files/serial_port.h"
#include "files/state_folder.h"
#include "modules/module_names.h"

namespace platform {
namespace {

// The path of the device directory's entry of this name, without regard to case; empty if there is none.
std::string FindDevice(const char* name)
{
    const std::string directory = DeviceDirectory();
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(directory.c_str()), closedir);
    if (!entries || *name == '.')
        return {};
    while (const dirent* entry = readdir(entries.get())) {
        if (strcasecmp(entry->d_name, name) == 0)
            return directory + '/' + entry->d_name;
    }
    return {};
}

struct stat StatusOf(int descriptor)
{
    struct stat status
    {
    };
    if (fstat(descriptor, &status))
        ThrowErrno();
    return status;
}

// Looked at before it is opened: to open a FIFO or a tape has effects of its own.
void CheckIsDevice(const std::string& path)
{
    struct stat status
    {
    };
    if (stat(path.c_str(), &status))
        ThrowErrno();
    if (S_ISDIR(status.st_mode))
        throw Win32Error{ERROR_DIRECTORY};
    if (!S_ISCHR(status.st_mode))
        throw Win32Error{ERROR_BAD_DEVICE};
}

// Bytes as they are, a read that gives what is there; speed and parity stay as the driver has them.
void SetRaw(int descriptor)
{
    termios settings{};
    if (tcgetattr(descriptor, &settings))
        ThrowErrno();
    const tcflag_t kept = CSIZE | PARENB;
    const tcflag_t line = settings.c_cflag & kept;
    cfmakeraw(&settings);
    settings.c_cflag = (settings.c_cflag & ~kept) | line | CREAD;
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    if (tcsetattr(descriptor, TCSANOW, &settings))
        ThrowErrno();
}

std::shared_ptr<File> OpenPort(const std::string& path, DWORD flags)
{
    CheckIsDevice(path);
    UniqueDescriptor descriptor(open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK));
    if (!descriptor)
        ThrowErrno();
    if (!isatty(descriptor.Get()))
        throw Win32Error{ERROR_BAD_DEVICE};
    if (flock(descriptor.Get(), LOCK_EX | LOCK_NB))
        throw Win32Error{errno == EWOULDBLOCK ? DWORD{ERROR_ACCESS_DENIED} : ErrorFromErrno(errno)};
    SetRaw(descriptor.Get());
    return std::make_shared<SerialPort>(std::move(descriptor), (flags & FILE_FLAG_OVERLAPPED) != 0);
}

int AccessFlags(DWORD access)
{
    const bool appends = (access & FILE_APPEND_DATA) && !(access & (GENERIC_WRITE | FILE_WRITE_DATA));
    const bool writes = appends || (access & (GENERIC_WRITE | FILE_WRITE_DATA));
    const bool reads = (access & (GENERIC_READ | FILE_READ_DATA)) || !writes;
    return (writes ? reads ? O_RDWR : O_WRONLY : O_RDONLY) | (appends ? O_APPEND : 0);
}

int DispositionFlags(DWORD disposition)
{
    switch (disposition) {
    case OPEN_EXISTING:
        return 0;
    case OPEN_ALWAYS:
        return O_CREAT;
    default:
        throw Win32Error{ERROR_INVALID_PARAMETER};
    }
}

// O_NONBLOCK keeps the opening of a FIFO from waiting for its other end, for ever if need be. What is created is its
// owner's alone, and no link leads elsewhere: the library's log would follow it.
int OpenDescriptor(const std::string& path, int flags)
{
    if (flags & O_CREAT)
        flags |= O_NOFOLLOW;
    return open(path.c_str(), flags | O_NOCTTY | O_CLOEXEC | O_NONBLOCK, 0600);
}

// What was there already becomes its owner's alone too, as far as it is this user's and has no other name: that of
// another user, or one that somebody has linked here, stays as it is. Where a file system has no modes, nothing
// changes.
void KeepPrivate(int descriptor, const struct stat& status)
{
    constexpr mode_t others = S_IRWXG | S_IRWXO, all = 07777;
    if ((status.st_mode & others) && status.st_nlink == 1 && status.st_uid == geteuid())
        fchmod(descriptor, status.st_mode & all & ~others);
}

bool IsRefused(int error)
{
    return error == EACCES || error == EPERM || error == EROFS;
}

std::shared_ptr<File> OpenDiskFile(const std::string& path, DWORD access, DWORD disposition)
{
    const int flags = AccessFlags(access) | DispositionFlags(disposition);
    UniqueDescriptor descriptor(OpenDescriptor(path, flags));
    if (!descriptor && IsRefused(errno) && (flags & O_CREAT) && IsBesideModule(path)) {
        const std::string own = FileInStateFolder(path);
        if (own.empty())
            throw Win32Error{ERROR_ACCESS_DENIED};
        descriptor = UniqueDescriptor(OpenDescriptor(own, flags));
    }
    if (!descriptor)
        ThrowErrno();
    const struct stat status = StatusOf(descriptor.Get());
    switch (status.st_mode & S_IFMT) {
    case S_IFREG:
        if (flags & O_CREAT)
            KeepPrivate(descriptor.Get(), status);
        break;
    case S_IFCHR:
        if (fcntl(descriptor.Get(), F_SETFL, flags & O_APPEND))
            ThrowErrno();
        break;
    case S_IFDIR:
        throw Win32Error{ERROR_ACCESS_DENIED};
    default:
        throw Win32Error{ERROR_BAD_DEVICE};
    }
    return std::make_shared<DiskFile>(std::move(descriptor));
}

} // namespace

std::shared_ptr<File> OpenFile(const char* name, DWORD access, DWORD disposition, DWORD flags)
{
    if (!name || !*name)
        throw Win32Error{ERROR_PATH_NOT_FOUND};
    const bool prefixed = std::strncmp(name, "\\\\?\\", 4) == 0 || std::strncmp(name, "\\\\.\\", 4) == 0;
    const char* plain = prefixed ? name + 4 : name;
    if (!std::strchr(plain, '/')) {
        const std::string device = FindDevice(plain);
        if (!device.empty())
            return OpenPort(device, flags);
        if (prefixed)
            throw Win32Error{ERROR_FILE_NOT_FOUND};
    }
    return OpenDiskFile(plain, access, disposition);
}

} // namespace platform
