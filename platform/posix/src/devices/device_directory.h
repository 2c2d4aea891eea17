// The device directory (PHNNRV_DEVICES): one symbolic link to a terminal per device. A name that ends in a class GUID
// in braces is a device interface of that class, any other name is a plain serial port. What is no link, and what is
// hidden, is not there. A directory that cannot be read is empty.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

namespace platform {

std::string DeviceDirectory();

// The names of the directory's links, in byte order.
std::vector<std::string> DeviceNames(const std::string& directory);

// The class that a name ends in; none for a plain serial port's.
std::optional<GUID> InterfaceClassOf(std::string_view name);

// The path by which a device interface is known and opened.
std::string InterfacePath(std::string_view name);

} // namespace platform
