// What a handset's driver, the system and an administrator do, for tests on Windows: the registry entries by which
// the library finds a handset, the device messages to its window, and the logging value. They change the machine's
// registry, so they run in a Wine prefix of their own (docs/windows.md).
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

namespace driver {

// The class of the library's hidden window.
inline constexpr char kDeviceWindow[] = "PHNNRVDeviceWindow";

// The handset's diagnostic interface; opening it leads to the test run's port.
inline constexpr char kInterfacePath[] = R"(\\?\usb#vid_fffe&pid_0001#0001#{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5})";

// Whether the interface is present.
void SetInterfacePresent(bool present);

// Tells the library's window, if there is one, as the system does; for arrival and removal.
LRESULT SendDeviceChange(WPARAM event);

// The serial-port map: empty, or with this port alone.
void SetSerialPort(const std::string& port);
void ClearSerialPorts();

void SetLoggingLevel(DWORD level);

// Which the library reads when it opens a port.
void SetPromptReads(bool areWanted);

// The PHNNRV.dll that was built with this program.
std::filesystem::path BuiltLibrary();

// Dispatches this thread's messages until the library's start timer has fired: its watch thread scans from here on.
void DispatchStartTimer();

} // namespace driver
