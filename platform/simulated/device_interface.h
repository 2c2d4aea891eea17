// The device interface that the simulated handset is found by, and the messages that tell of its coming and going.
#pragma once

#include <windows.h>

namespace simulated {

inline constexpr GUID kInterfaceClass = {0x6B1D2E40, 0x5C77, 0x4A1E, {0x9D, 0x3A, 0x2F, 0x80, 0xC4, 0xE1, 0xB7, 0xA5}};
inline constexpr char kInterfacePath[] = R"(\\?\usb#vid_fffe&pid_0001#0001#{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5})";

// From here on the window is told. On the window's thread.
void TellWindow(HWND window);
void TellNoWindow();

// On any thread; waits for nobody. The window gets WM_DEVICECHANGE as its thread next looks for messages.
void Announce(bool isArrival);

} // namespace simulated
