#include "system/files.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace host {

struct GrowingFile::Handle
{
    int descriptor;
};

namespace {

namespace fs = std::filesystem;

constexpr mode_t kOwnersFile = 0600;
constexpr mode_t kOwnersFolder = 0700;

[[noreturn]] void ThrowErrno(const fs::path& path)
{
    throw std::system_error(errno, std::generic_category(), path.string());
}

// Closed with its owner.
class Descriptor
{
public:
    Descriptor(const fs::path& path, int flags)
        : m_number(open(path.c_str(), flags | O_CLOEXEC | O_NOFOLLOW, kOwnersFile))
    {
        if (m_number < 0)
            ThrowErrno(path);
    }
    ~Descriptor() { close(m_number); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const { return m_number; }

private:
    const int m_number;
};

void WriteAll(int descriptor, std::string_view text, const fs::path& path)
{
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written < 0 && errno != EINTR)
            ThrowErrno(path);
        text.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
}

// A name beside the path that nobody else uses.
fs::path Unfinished(const fs::path& path)
{
    fs::path unfinished = path;
    unfinished += "." + std::to_string(getpid()) + ".part";
    return unfinished;
}

// Keeps the names in the path's folder, which a link may lead to. Some file systems cannot, and keep them all the same.
void SyncFolderOf(const fs::path& path)
{
    const fs::path folder = path.has_parent_path() ? path.parent_path() : ".";
    const int directory = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0)
        return;
    fsync(directory);
    close(directory);
}

} // namespace

void MakePrivateFolder(const fs::path& folder)
{
    if (folder.empty() || fs::is_directory(folder))
        return;
    MakePrivateFolder(folder.parent_path());
    if (mkdir(folder.c_str(), kOwnersFolder) != 0 && errno != EEXIST)
        ThrowErrno(folder);
    SyncFolderOf(folder);
}

void WriteWhole(const fs::path& path, std::string_view text)
{
    const fs::path unfinished = Unfinished(path);
    unlink(unfinished.c_str()); // left by a run of the same number
    try {
        const Descriptor file(unfinished, O_WRONLY | O_CREAT | O_EXCL);
        WriteAll(file.Get(), text, path);
        if (fsync(file.Get()) != 0)
            ThrowErrno(path);
        if (rename(unfinished.c_str(), path.c_str()) != 0)
            ThrowErrno(path);
    } catch (const std::system_error&) {
        unlink(unfinished.c_str());
        throw;
    }
    SyncFolderOf(path);
}

GrowingFile::GrowingFile(const fs::path& path)
    : m_handle(new Handle{open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kOwnersFile)})
{
    if (m_handle->descriptor < 0)
        ThrowErrno(path);
    SyncFolderOf(path);
}

GrowingFile::~GrowingFile()
{
    close(m_handle->descriptor);
}

void GrowingFile::Append(std::string_view text)
{
    WriteAll(m_handle->descriptor, text, "");
    if (fdatasync(m_handle->descriptor) != 0)
        ThrowErrno("");
}

void GrowingFile::Reserve(std::uint64_t size)
{
    const off_t end = lseek(m_handle->descriptor, 0, SEEK_END);
    const int result =
        end < 0 ? -1 : fallocate(m_handle->descriptor, FALLOC_FL_KEEP_SIZE, end, static_cast<off_t>(size));
    if (result != 0 && errno == ENOSPC)
        ThrowErrno("");
}

} // namespace host
