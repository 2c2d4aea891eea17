#include "system/files.h"

#include <algorithm>
#include <limits>
#include <string>
#include <system_error>
#include <windows.h>

namespace host {

struct GrowingFile::Handle
{
    HANDLE file;
};

namespace {

namespace fs = std::filesystem;

[[noreturn]] void ThrowLastError()
{
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

HANDLE Open(const fs::path& path, DWORD access, DWORD creation)
{
    // A link is opened, not followed, and then refuses to be written.
    const HANDLE file = CreateFileW(path.c_str(), access, FILE_SHARE_READ, nullptr, creation,
                                    FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        ThrowLastError();
    return file;
}

void WriteFlushed(HANDLE file, std::string_view text)
{
    constexpr std::size_t kMost = std::numeric_limits<DWORD>::max();
    while (!text.empty()) {
        DWORD written = 0;
        if (!WriteFile(file, text.data(), static_cast<DWORD>(std::min(text.size(), kMost)), &written, nullptr))
            ThrowLastError();
        text.remove_prefix(written);
    }
    if (!FlushFileBuffers(file))
        ThrowLastError();
}

} // namespace

// The user's own folders are the user's alone, as those above them are.
void MakePrivateFolder(const fs::path& folder)
{
    fs::create_directories(folder);
}

void WriteWhole(const fs::path& path, std::string_view text)
{
    fs::path unfinished = path;
    unfinished += "." + std::to_string(GetCurrentProcessId()) + ".part";
    DeleteFileW(unfinished.c_str()); // left by a run of the same number
    try {
        {
            GrowingFile file(unfinished);
            file.Append(text);
        }
        if (!MoveFileExW(unfinished.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
            ThrowLastError();
    } catch (const std::system_error&) {
        DeleteFileW(unfinished.c_str());
        throw;
    }
}

GrowingFile::GrowingFile(const fs::path& path) : m_handle(new Handle{Open(path, FILE_APPEND_DATA, OPEN_ALWAYS)}) {}

GrowingFile::~GrowingFile()
{
    CloseHandle(m_handle->file);
}

void GrowingFile::Append(std::string_view text)
{
    WriteFlushed(m_handle->file, text);
}

void GrowingFile::Reserve(std::uint64_t size)
{
    LARGE_INTEGER end{};
    FILE_ALLOCATION_INFO allocation{};
    if (!GetFileSizeEx(m_handle->file, &end))
        return;
    allocation.AllocationSize.QuadPart = end.QuadPart + static_cast<LONGLONG>(size);
    if (!SetFileInformationByHandle(m_handle->file, FileAllocationInfo, &allocation, sizeof allocation) &&
        GetLastError() == ERROR_DISK_FULL)
        ThrowLastError();
}

} // namespace host
