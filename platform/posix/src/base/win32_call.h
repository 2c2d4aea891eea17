// The boundary of every exported call that can fail: it asks the fault table first, and turns what the body throws into
// the last error and the call's failure value. Nothing is thrown across the Win32 interface.
//
//     BOOL WINAPI SetEvent(HANDLE hEvent)
//     {
//         return Win32Call(Call::SetEvent, FALSE, [&]() -> BOOL { ... });
//     }
#pragma once

#include <new>
#include <system_error>

#include "base/faults.h"
#include "base/win32_error.h"

namespace platform {

// Runs the body and gives the Win32 code of what it threw, ERROR_SUCCESS if nothing.
template <typename Body>
DWORD ErrorOf(Body&& body) noexcept
{
    try {
        body();
        return ERROR_SUCCESS;
    } catch (const Win32Error& error) {
        return error.code;
    } catch (const std::bad_alloc&) {
        return ERROR_NOT_ENOUGH_MEMORY;
    } catch (const std::system_error& error) {
        return ErrorFromErrno(error.code().value());
    }
}

// For calls that report through the last error.
template <typename Result, typename Body>
Result Win32Call(Call call, Result failure, Body&& body) noexcept
{
    DWORD error = InjectedError(call);
    Result result = failure;
    if (error == ERROR_SUCCESS)
        error = ErrorOf([&] { result = body(); });
    if (error != ERROR_SUCCESS)
        SetLastError(error);
    return result;
}

// For calls that return their error code (the registry's). The body returns one, or throws.
template <typename Body>
LONG Win32Status(Call call, Body&& body) noexcept
{
    DWORD error = InjectedError(call);
    LONG status = static_cast<LONG>(error);
    if (error == ERROR_SUCCESS) {
        error = ErrorOf([&] { status = body(); });
        if (error != ERROR_SUCCESS)
            status = static_cast<LONG>(error);
    }
    return status;
}

} // namespace platform
