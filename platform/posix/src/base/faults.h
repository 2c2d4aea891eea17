// Calls that a test has asked to fail (phn_platform_test.h). Every exported call asks here first, through win32_call.h;
// without test hooks the question costs nothing.
#pragma once

#include <windows.h>

#include "base/call_names.h"

namespace platform {

#if PHN_TEST_HOOKS
// The error with which this call shall fail now, ERROR_SUCCESS when it shall run.
DWORD InjectedError(Call call) noexcept;
#else
constexpr DWORD InjectedError(Call) noexcept
{
    return ERROR_SUCCESS;
}
#endif

} // namespace platform
