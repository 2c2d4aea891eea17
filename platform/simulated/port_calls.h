// The port calls of the library where a simulated handset takes the handset's place: redirect.h gives them these names.
// The one interface that they list leads to a named pipe, which the handset serves in the same process. Its handles are
// Windows' own, so that reading, writing, waiting, cancelling and closing are left to Windows. No other port opens.
#pragma once

#include <windows.h>

#include <setupapi.h>

HANDLE WINAPI SimulatedCreateFileA(LPCSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                   DWORD disposition, DWORD flags, HANDLE model);
BOOL WINAPI SimulatedSetCommTimeouts(HANDLE port, LPCOMMTIMEOUTS timeouts);
BOOL WINAPI SimulatedClearCommError(HANDLE port, LPDWORD errors, LPCOMSTAT state);
BOOL WINAPI SimulatedPurgeComm(HANDLE port, DWORD flags);

HDEVINFO WINAPI SimulatedSetupDiGetClassDevsA(const GUID* interfaceClass, PCSTR enumerator, HWND parent, DWORD flags);
BOOL WINAPI SimulatedSetupDiEnumDeviceInterfaces(HDEVINFO list, PSP_DEVINFO_DATA device, const GUID* interfaceClass,
                                                 DWORD index, PSP_DEVICE_INTERFACE_DATA found);
BOOL WINAPI SimulatedSetupDiGetDeviceInterfaceDetailA(HDEVINFO list, PSP_DEVICE_INTERFACE_DATA found,
                                                      PSP_DEVICE_INTERFACE_DETAIL_DATA_A detail, DWORD size,
                                                      PDWORD needed, PSP_DEVINFO_DATA device);
BOOL WINAPI SimulatedSetupDiDestroyDeviceInfoList(HDEVINFO list);

// The library registers as it is loaded, and ends it as it is unloaded: there the handset ends as well.
HDEVNOTIFY WINAPI SimulatedRegisterDeviceNotificationA(HANDLE recipient, LPVOID filter, DWORD flags);
BOOL WINAPI SimulatedUnregisterDeviceNotification(HDEVNOTIFY registration);
