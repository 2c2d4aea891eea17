// What a run needs around the library: a folder of its own with the library's copy, a device directory and a registry,
// times that run at a fraction, and counts that begin shortly before they wrap. Made before anything else.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "simulator/lines/device_directory.h"

namespace soak {

// The factor of all times in most runs.
inline constexpr double kScale = 0.01;

inline constexpr std::uint32_t kAllLines = 0xFFFFF; // of the log

class Surroundings
{
public:
    // `level` is the log's; 0: none.
    Surroundings(double scale, std::uint32_t level);
    ~Surroundings();
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;

    const std::filesystem::path& Devices() const { return devices_.Path(); }
    const std::filesystem::path& Folder() const { return folder_; } // where the log lies, too
    std::string LibraryPath() const { return (folder_ / "libphnnrv.so").string(); }

private:
    const simulator::DeviceDirectory devices_;
    const std::filesystem::path folder_;
};

} // namespace soak
