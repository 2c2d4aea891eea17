// The table of the calls that this stand-in exports: one row per Win32 call. Each has a number (Call::Name) which its
// boundary in win32_call.h carries, so that a test can make any of them fail by its name.
#pragma once

#include <cstddef>
#include <initializer_list>

#define PHN_WIN32_CALLS(ROW)                                                                                           \
    ROW(CancelIoEx)                                                                                                    \
    ROW(CancelSynchronousIo)                                                                                           \
    ROW(ClearCommError)                                                                                                \
    ROW(CloseHandle)                                                                                                   \
    ROW(CreateEventA)                                                                                                  \
    ROW(CreateFileA)                                                                                                   \
    ROW(CreateMutexA)                                                                                                  \
    ROW(CreateThread)                                                                                                  \
    ROW(CreateWindowExA)                                                                                               \
    ROW(DestroyWindow)                                                                                                 \
    ROW(DispatchMessageA)                                                                                              \
    ROW(DuplicateHandle)                                                                                               \
    ROW(FindWindowExA)                                                                                                 \
    ROW(FreeLibrary)                                                                                                   \
    ROW(GetMessageA)                                                                                                   \
    ROW(GetModuleFileNameA)                                                                                            \
    ROW(GetModuleHandleA)                                                                                              \
    ROW(GetModuleHandleExA)                                                                                            \
    ROW(GetOverlappedResult)                                                                                           \
    ROW(GetProcAddress)                                                                                                \
    ROW(GetVersionExA)                                                                                                 \
    ROW(GetWindowLongPtrA)                                                                                             \
    ROW(KillTimer)                                                                                                     \
    ROW(LoadLibraryA)                                                                                                  \
    ROW(MsgWaitForMultipleObjects)                                                                                     \
    ROW(MultiByteToWideChar)                                                                                           \
    ROW(PeekMessageA)                                                                                                  \
    ROW(PostMessageA)                                                                                                  \
    ROW(PostThreadMessageA)                                                                                            \
    ROW(PurgeComm)                                                                                                     \
    ROW(ReadFile)                                                                                                      \
    ROW(RegCloseKey)                                                                                                   \
    ROW(RegEnumValueA)                                                                                                 \
    ROW(RegOpenKeyExA)                                                                                                 \
    ROW(RegQueryValueExA)                                                                                              \
    ROW(RegisterClassA)                                                                                                \
    ROW(RegisterDeviceNotificationA)                                                                                   \
    ROW(RegisterWindowMessageA)                                                                                        \
    ROW(ReleaseMutex)                                                                                                  \
    ROW(ResetEvent)                                                                                                    \
    ROW(SendMessageA)                                                                                                  \
    ROW(SetCommTimeouts)                                                                                               \
    ROW(SetEvent)                                                                                                      \
    ROW(SetTimer)                                                                                                      \
    ROW(SetWindowLongPtrA)                                                                                             \
    ROW(SetupDiDestroyDeviceInfoList)                                                                                  \
    ROW(SetupDiEnumDeviceInterfaces)                                                                                   \
    ROW(SetupDiGetClassDevsA)                                                                                          \
    ROW(SetupDiGetDeviceInterfaceDetailA)                                                                              \
    ROW(SystemTimeToTzSpecificLocalTime)                                                                               \
    ROW(TzSpecificLocalTimeToSystemTime)                                                                               \
    ROW(UnregisterClassA)                                                                                              \
    ROW(UnregisterDeviceNotification)                                                                                  \
    ROW(WaitForMultipleObjects)                                                                                        \
    ROW(WaitForSingleObject)                                                                                           \
    ROW(WideCharToMultiByte)                                                                                           \
    ROW(WriteFile)

namespace platform {

enum class Call : unsigned char
{
#define PHN_ROW(name) name,
    PHN_WIN32_CALLS(PHN_ROW)
#undef PHN_ROW
};

#define PHN_ROW(name) Call::name,
constexpr std::size_t kCallCount = std::initializer_list<Call>{PHN_WIN32_CALLS(PHN_ROW)}.size();
#undef PHN_ROW

} // namespace platform
