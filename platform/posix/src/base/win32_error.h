// Errors inside the stand-in. A failing step throws Win32Error with the code its caller shall find in GetLastError; the
// boundary of every exported call (win32_call.h) turns it into the last error and the call's failure value.
#pragma once

#include <windows.h>

namespace platform {

struct Win32Error
{
    DWORD code;
};

// The Win32 code for an errno value. What has no counterpart is ERROR_GEN_FAILURE.
DWORD ErrorFromErrno(int number);

// Throws the error that errno stands for.
[[noreturn]] void ThrowErrno();

} // namespace platform
