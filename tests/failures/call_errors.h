// How each call of the stand-in can fail: the errors that Windows documents or gives for it. Events and mutexes do not
// fail for a program that has them; the library bears it all the same. Not here are calls that close or destroy
// something, which would leave it here and nowhere else, and the host's own (LoadLibraryA, GetProcAddress,
// FreeLibrary).
#pragma once

#include <vector>

#include <windows.h>

struct CallErrors
{
    const char* call;
    std::vector<DWORD> errors;
};

// clang-format off
inline const std::vector<CallErrors> kCallErrors = {
    {"CancelIoEx", {ERROR_NOT_FOUND, ERROR_BAD_COMMAND}}, {"ClearCommError", {ERROR_BAD_COMMAND, ERROR_ACCESS_DENIED}},
    {"CreateEventA", {ERROR_NOT_ENOUGH_MEMORY, ERROR_NO_SYSTEM_RESOURCES}},
    {"CreateFileA", {ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_TOO_MANY_OPEN_FILES}},
    {"CreateMutexA", {ERROR_NOT_ENOUGH_MEMORY}}, {"CreateThread", {ERROR_NOT_ENOUGH_MEMORY}},
    {"CreateWindowExA", {ERROR_NOT_ENOUGH_MEMORY, ERROR_CANNOT_FIND_WND_CLASS}},
    {"GetModuleFileNameA", {ERROR_NOT_ENOUGH_MEMORY}}, {"GetModuleHandleA", {ERROR_MOD_NOT_FOUND}},
    {"GetModuleHandleExA", {ERROR_MOD_NOT_FOUND}},
    {"GetOverlappedResult", {ERROR_OPERATION_ABORTED, ERROR_GEN_FAILURE}},
    {"GetVersionExA", {ERROR_INSUFFICIENT_BUFFER}}, {"GetWindowLongPtrA", {ERROR_INVALID_WINDOW_HANDLE}},
    {"KillTimer", {ERROR_INVALID_WINDOW_HANDLE, ERROR_INVALID_PARAMETER}},
    {"MultiByteToWideChar", {ERROR_NOT_ENOUGH_MEMORY, ERROR_INVALID_FLAGS}},
    {"PeekMessageA", {ERROR_NOT_ENOUGH_MEMORY}},
    {"PostMessageA", {ERROR_NOT_ENOUGH_QUOTA, ERROR_INVALID_WINDOW_HANDLE}}, {"PurgeComm", {ERROR_BAD_COMMAND}},
    {"ReadFile", {ERROR_GEN_FAILURE, ERROR_OPERATION_ABORTED, ERROR_INVALID_HANDLE}},
    {"RegEnumValueA", {ERROR_NO_MORE_ITEMS, ERROR_NOT_ENOUGH_MEMORY}},
    {"RegOpenKeyExA", {ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED}},
    {"RegQueryValueExA", {ERROR_FILE_NOT_FOUND, ERROR_NOT_ENOUGH_MEMORY}},
    {"RegisterClassA", {ERROR_NOT_ENOUGH_MEMORY, ERROR_CLASS_ALREADY_EXISTS}},
    {"RegisterDeviceNotificationA", {ERROR_NOT_ENOUGH_MEMORY}},
    {"RegisterWindowMessageA", {ERROR_NOT_ENOUGH_MEMORY}}, {"ReleaseMutex", {ERROR_INVALID_HANDLE}},
    {"ResetEvent", {ERROR_INVALID_HANDLE}}, {"SetCommTimeouts", {ERROR_BAD_COMMAND}},
    {"SetEvent", {ERROR_INVALID_HANDLE}}, {"SetTimer", {ERROR_NOT_ENOUGH_MEMORY}},
    {"SetWindowLongPtrA", {ERROR_INVALID_WINDOW_HANDLE}},
    {"SetupDiEnumDeviceInterfaces", {ERROR_NO_MORE_ITEMS, ERROR_NOT_ENOUGH_MEMORY}},
    {"SetupDiGetClassDevsA", {ERROR_NOT_ENOUGH_MEMORY}},
    {"SetupDiGetDeviceInterfaceDetailA", {ERROR_NOT_ENOUGH_MEMORY}},
    {"SystemTimeToTzSpecificLocalTime", {ERROR_INVALID_PARAMETER}},
    {"TzSpecificLocalTimeToSystemTime", {ERROR_INVALID_PARAMETER}},
    {"WaitForMultipleObjects", {ERROR_NOT_ENOUGH_MEMORY}}, {"WaitForSingleObject", {ERROR_NOT_ENOUGH_MEMORY}},
    {"WideCharToMultiByte", {ERROR_NOT_ENOUGH_MEMORY}},
    {"WriteFile", {ERROR_GEN_FAILURE, ERROR_DISK_FULL, ERROR_INVALID_HANDLE}},
};
// clang-format on
