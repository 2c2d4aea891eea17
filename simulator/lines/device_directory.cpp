#include "simulator/lines/device_directory.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace simulator {

DeviceDirectory::DeviceDirectory()
{
    std::string path = (std::filesystem::temp_directory_path() / "phnnrv-devices-XXXXXX").string();
    if (!mkdtemp(path.data()))
        throw std::system_error(errno, std::generic_category(), path);
    path_ = path;
}

DeviceDirectory::~DeviceDirectory()
{
    std::error_code error;
    std::filesystem::remove_all(path_, error);
}

} // namespace simulator
