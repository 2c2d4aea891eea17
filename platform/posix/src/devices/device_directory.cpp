#include "devices/device_directory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <memory>

namespace platform {
namespace {

bool IsLink(DIR* directory, const dirent& entry)
{
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_LNK;
    struct stat status
    {
    };
    return fstatat(dirfd(directory), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode);
}

// Reads the hexadecimal digits at this place, as many as the number has; false if there is anything else.
template <typename Number>
bool ReadHex(std::string_view text, size_t at, Number& number)
{
    const char* const begin = text.data() + at;
    const char* const end = begin + 2 * sizeof number;
    const auto [stop, error] = std::from_chars(begin, end, number, 16);
    return error == std::errc() && stop == end && *begin != '-';
}

// {6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5}
constexpr size_t kGuidLength = 38;
constexpr size_t kTailAt[8] = {20, 22, 25, 27, 29, 31, 33, 35};

} // namespace

std::string DeviceDirectory()
{
    const char* const directory = std::getenv("PHNNRV_DEVICES");
    return directory ? directory : "/dev/phnnrv";
}

std::vector<std::string> DeviceNames(const std::string& directory)
{
    std::vector<std::string> names;
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(directory.c_str()), closedir);
    while (entries) {
        const dirent* const entry = readdir(entries.get());
        if (!entry)
            break;
        if (*entry->d_name != '.' && IsLink(entries.get(), *entry))
            names.emplace_back(entry->d_name);
    }
    std::ranges::sort(names);
    return names;
}

std::optional<GUID> InterfaceClassOf(std::string_view name)
{
    if (name.size() < kGuidLength)
        return std::nullopt;
    const std::string_view text = name.substr(name.size() - kGuidLength);
    if (text[0] != '{' || text[9] != '-' || text[14] != '-' || text[19] != '-' || text[24] != '-' || text[37] != '}')
        return std::nullopt;
    GUID guid{};
    bool valid = ReadHex(text, 1, guid.Data1) && ReadHex(text, 10, guid.Data2) && ReadHex(text, 15, guid.Data3);
    for (size_t i = 0; i < std::size(kTailAt); i++)
        valid = valid && ReadHex(text, kTailAt[i], guid.Data4[i]);
    return valid ? std::optional(guid) : std::nullopt;
}

std::string InterfacePath(std::string_view name)
{
    return "\\\\?\\" + std::string(name);
}

} // namespace platform
