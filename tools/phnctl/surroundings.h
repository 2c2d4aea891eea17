// Where handsets appear on this system, for doctor: a device directory (surroundings_directory.cpp) or the driver's
// device interfaces and serial ports (surroundings_driver.cpp).
#pragma once

#include <string>
#include <vector>

namespace phnctl {

struct PortEntry
{
    std::string name; // as the library sees it
    std::string path; // to open or examine
    std::string kind; // "USB interface", "modem interface", "serial port"
};

// A terminal that could be a handset, but that the library does not see.
struct UnlistedTerminal
{
    std::string path;
    std::string remedy;
};

struct Surroundings
{
    std::string place;   // "device directory /dev/phnnrv"
    std::string problem; // empty: the place is there and can be read
    std::string remedy;
    std::vector<PortEntry> entries;
    std::vector<UnlistedTerminal> unlisted;
};

Surroundings LookAround();

} // namespace phnctl
