// A device directory of one's own, empty at first and gone with the object. Used by tests and by phnctl --simulator.
#pragma once

#include <filesystem>

namespace simulator {

class DeviceDirectory
{
public:
    DeviceDirectory(); // throws std::system_error
    ~DeviceDirectory();
    DeviceDirectory(const DeviceDirectory&) = delete;
    DeviceDirectory& operator=(const DeviceDirectory&) = delete;

    const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

} // namespace simulator
