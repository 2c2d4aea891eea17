#include "messages/window.h"

#include "base/win32_call.h"
#include "messages/message_queue.h"

namespace platform {

std::shared_ptr<Window> WindowOf(const Lock&, HWND handle)
{
    try {
        return FromHandle<Window>(handle);
    } catch (const Win32Error&) {
        throw Win32Error{ERROR_INVALID_WINDOW_HANDLE};
    }
}

std::shared_ptr<Window> OwnWindowOf(const Lock& lock, HWND handle)
{
    auto window = WindowOf(lock, handle);
    if (window->queue != MessageQueue::Current(lock))
        throw Win32Error{ERROR_ACCESS_DENIED};
    return window;
}

LRESULT CallWindow(Lock& lock, const Window& window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const WNDPROC procedure = window.procedure;
    lock.unlock();
    const LRESULT result = procedure(window.handle, message, wParam, lParam);
    lock.lock();
    return result;
}

void RemoveWindow(const Lock& lock, const std::shared_ptr<Window>& window)
{
    if (window->destroyed)
        return;
    window->destroyed = true;
    window->windowClass->windows--;
    window->queue->Forget(lock, *window);
    ErrorOf([&] { FreeHandle(window->handle); }); // unless a caller has closed it like any other handle
}

} // namespace platform
