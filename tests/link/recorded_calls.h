// The Win32 calls of a thread in their order, each with the numbers that it is made with: "CloseHandle, ReadFile 1, ".
// They are those that do something with a port, an event, the registry or the time; locks and the last error are left
// out. A program includes this once.
#pragma once

#include <dlfcn.h>
#include <windows.h>

#include <string>

inline thread_local std::string* recordedCalls = nullptr; // where they are recorded, if they are

template <typename... Numbers>
void RecordCall(const std::string& name, Numbers... numbers)
{
    if (recordedCalls)
        *recordedCalls += (name + ... + (" " + std::to_string(numbers))) + ", ";
}

// Takes the place of the stand-in's call, and goes on to it. Behind the arguments stand the numbers that are recorded.
#define RECORDED(Result, name, parameters, arguments, ...)                                                             \
    Result WINAPI name parameters                                                                                      \
    {                                                                                                                  \
        static const auto next = reinterpret_cast<decltype(&name)>(dlsym(RTLD_NEXT, "phn_" #name));                    \
        RecordCall(#name __VA_OPT__(, ) __VA_ARGS__);                                                                  \
        return next arguments;                                                                                         \
    }

// clang-format off
RECORDED(BOOL, CancelIoEx, (HANDLE file, LPOVERLAPPED record), (file, record))
RECORDED(BOOL, ClearCommError, (HANDLE file, LPDWORD errors, LPCOMSTAT status), (file, errors, status))
RECORDED(BOOL, CloseHandle, (HANDLE handle), (handle))
RECORDED(HANDLE, CreateEventA, (LPSECURITY_ATTRIBUTES security, BOOL manual, BOOL set, LPCSTR name),
      (security, manual, set, name), manual, set)
RECORDED(HANDLE, CreateFileA, (LPCSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD how,
      DWORD flags, HANDLE like), (name, access, share, security, how, flags, like), access, share, how, flags)
RECORDED(BOOL, GetOverlappedResult, (HANDLE file, LPOVERLAPPED record, LPDWORD bytes, BOOL wait),
      (file, record, bytes, wait), wait)
RECORDED(ULONGLONG, GetTickCount64, (), ())
RECORDED(BOOL, PurgeComm, (HANDLE file, DWORD flags), (file, flags), flags)
RECORDED(BOOL, ReadFile, (HANDLE file, LPVOID buffer, DWORD size, LPDWORD bytes, LPOVERLAPPED record),
      (file, buffer, size, bytes, record), size)
RECORDED(LSTATUS, RegCloseKey, (HKEY key), (key))
RECORDED(LSTATUS, RegOpenKeyExA, (HKEY key, LPCSTR name, DWORD options, DWORD access, PHKEY opened),
      (key, name, options, access, opened), access)
RECORDED(LSTATUS, RegQueryValueExA, (HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size),
      (key, name, reserved, type, data, size))
RECORDED(BOOL, ResetEvent, (HANDLE event), (event))
RECORDED(BOOL, SetCommTimeouts, (HANDLE file, LPCOMMTIMEOUTS t), (file, t), t->ReadIntervalTimeout,
      t->ReadTotalTimeoutMultiplier, t->ReadTotalTimeoutConstant, t->WriteTotalTimeoutMultiplier,
      t->WriteTotalTimeoutConstant)
RECORDED(BOOL, SetEvent, (HANDLE event), (event))
RECORDED(void, Sleep, (DWORD time), (time), time)
RECORDED(DWORD, WaitForMultipleObjects, (DWORD count, const HANDLE* handles, BOOL all, DWORD time),
      (count, handles, all, time), count, all, time)
RECORDED(DWORD, WaitForSingleObject, (HANDLE handle, DWORD time), (handle, time), time)
RECORDED(BOOL, WriteFile, (HANDLE file, LPCVOID data, DWORD size, LPDWORD bytes, LPOVERLAPPED record),
      (file, data, size, bytes, record), size)
// clang-format on
