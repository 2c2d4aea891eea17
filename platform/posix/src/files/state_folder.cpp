#include "files/state_folder.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>

namespace platform {
namespace {

std::string StateHome()
{
    const char* const named = secure_getenv("XDG_STATE_HOME");
    if (named && *named == '/')
        return named;
    const char* const home = secure_getenv("HOME");
    return home && *home == '/' ? std::string(home) + "/.local/state" : "";
}

// With those above it that are missing.
bool MakeFolder(const std::string& path)
{
    if (mkdir(path.c_str(), 0700) == 0 || errno == EEXIST)
        return true;
    const size_t parent = path.rfind('/');
    return errno == ENOENT && parent != 0 && MakeFolder(path.substr(0, parent)) && mkdir(path.c_str(), 0700) == 0;
}

} // namespace

std::string FileInStateFolder(const std::string& path)
{
    const std::string home = StateHome();
    const std::string folder = home + "/phnnrv";
    return !home.empty() && MakeFolder(folder) ? folder + path.substr(path.rfind('/')) : "";
}

} // namespace platform
