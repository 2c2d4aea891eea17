#include "simulator/lines/handle_line_windows.h"

#include <windows.h>

#include <algorithm>
#include <system_error>

namespace simulator {
namespace {

DWORD Milliseconds(std::chrono::milliseconds time)
{
    constexpr std::int64_t kLongest = 86'400'000; // a day
    return static_cast<DWORD>(std::min<std::int64_t>(time.count(), kLongest));
}

} // namespace

void Handle::Reset(void* handle)
{
    if (handle_ && handle_ != INVALID_HANDLE_VALUE)
        CloseHandle(handle_);
    handle_ = handle;
}

void* MakeEvent()
{
    const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    if (!event)
        ThrowLastError("an event");
    return event;
}

void ThrowLastError(const std::string& what)
{
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

// An operation that is over goes before an interruption, so that a host's closing of the port is noticed even then.
long HandleLine::Transfer(const Begin& begin)
{
    const Handle done(MakeEvent());
    OVERLAPPED overlapped{};
    overlapped.hEvent = done.Get();
    if (!begin(&overlapped) && GetLastError() != ERROR_IO_PENDING)
        return -static_cast<long>(GetLastError());
    const HANDLE waits[] = {done.Get(), interrupted_.Get()};
    if (WaitForMultipleObjects(2, waits, FALSE, INFINITE) != WAIT_OBJECT_0)
        CancelIoEx(open_.Get(), &overlapped);
    DWORD size = 0;
    if (!GetOverlappedResult(open_.Get(), &overlapped, &size, TRUE))
        return -static_cast<long>(GetLastError());
    return static_cast<long>(size);
}

std::size_t HandleLine::Read(std::span<std::uint8_t> buffer)
{
    for (;;) {
        const long size = Transfer([&](void* overlapped) {
            return ReadFile(open_.Get(), buffer.data(), static_cast<DWORD>(buffer.size()), nullptr,
                            static_cast<OVERLAPPED*>(overlapped));
        });
        if (size > 0)
            return static_cast<std::size_t>(size);
        if (size == -ERROR_OPERATION_ABORTED || !HostHasGone())
            return 0;
    }
}

bool HandleLine::Write(std::span<const std::uint8_t> bytes)
{
    while (!bytes.empty()) {
        const long size = Transfer([&](void* overlapped) {
            return WriteFile(open_.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), nullptr,
                             static_cast<OVERLAPPED*>(overlapped));
        });
        if (size < 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(size));
    }
    return true;
}

bool HandleLine::WaitFor(void* object) const
{
    const HANDLE waits[] = {interrupted_.Get(), object};
    return WaitForMultipleObjects(2, waits, FALSE, INFINITE) == WAIT_OBJECT_0 + 1;
}

bool HandleLine::IsInterrupted() const
{
    return WaitForSingleObject(interrupted_.Get(), 0) == WAIT_OBJECT_0;
}

bool HandleLine::Pause(std::chrono::milliseconds time)
{
    return WaitForSingleObject(interrupted_.Get(), Milliseconds(time)) == WAIT_TIMEOUT;
}

bool HandleLine::PauseUnless(void* object, std::chrono::milliseconds time) const
{
    const HANDLE waits[] = {interrupted_.Get(), object};
    return WaitForMultipleObjects(2, waits, FALSE, Milliseconds(time)) != WAIT_OBJECT_0;
}

void HandleLine::Interrupt()
{
    SetEvent(interrupted_.Get());
}

} // namespace simulator
