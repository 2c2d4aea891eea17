// Where handsets appear on this system: a device directory (surroundings_directory.cpp) or the driver's device
// interfaces and serial ports (surroundings_driver.cpp). Used by doctor, and to explain a search that found nothing.
#pragma once

#include "phnctl/handset/finding.h"

#include <filesystem>
#include <string>
#include <vector>

namespace phnctl {

struct PortEntry
{
    std::string name; // as the library sees it
    std::string path; // to open or examine
    std::string kind; // "USB interface", "modem interface", "serial port"; the library leaves a "foreign ..." alone
};

struct Surroundings
{
    std::string place;            // "device directory /dev/phnnrv"
    std::filesystem::path folder; // the same as a path; empty where it is none
    std::string problem;          // empty: the place is there and can be read
    std::string remedy;
    std::vector<PortEntry> entries;
    std::vector<Finding> unlisted; // terminals that could be a handset, but that the library does not see
};

Surroundings LookAround();

// What else of the system decides whether a handset appears there.
std::vector<Finding> LookAtSystem();

// A line for another terminal that starts a simulated handset which this one then finds; empty where there is none.
std::string SimulatorCommand();

} // namespace phnctl
