// Windows and their classes. A window is a handle's object that belongs to the thread whose queue it names; all but the
// constant members are under the base lock. Used by the window and message calls and by device notifications.
#pragma once

#include <memory>
#include <string>

#include "base/base_lock.h"
#include "threads/handle_table.h"

namespace platform {

class MessageQueue;

struct WindowClass
{
    std::string name;
    HINSTANCE instance = nullptr;
    WNDPROC procedure = nullptr;
    ATOM atom = 0;
    unsigned windows = 0;
};

struct Window : Object
{
    Window(std::shared_ptr<WindowClass> kind, std::shared_ptr<MessageQueue> owner, std::string caption)
        : windowClass(std::move(kind)),
          queue(std::move(owner)),
          title(std::move(caption)),
          procedure(windowClass->procedure)
    {
    }

    const std::shared_ptr<WindowClass> windowClass;
    const std::shared_ptr<MessageQueue> queue;
    const std::string title;
    HWND handle = nullptr; // fixed once the window can be found
    WNDPROC procedure;
    LONG_PTR userData = 0;
    bool destroyed = false;
};

// The window of a handle; throws ERROR_INVALID_WINDOW_HANDLE. It may be destroyed as soon as the lock is left.
std::shared_ptr<Window> WindowOf(const Lock& lock, HWND handle);

// The same for a window that must be the calling thread's; throws ERROR_ACCESS_DENIED.
std::shared_ptr<Window> OwnWindowOf(const Lock& lock, HWND handle);

// Runs the window's procedure, on the thread that the window belongs to, with the lock released meanwhile.
LRESULT CallWindow(Lock& lock, const Window& window, UINT message, WPARAM wParam, LPARAM lParam);

// Takes the window from its thread, its class and the handle table. No procedure runs.
void RemoveWindow(const Lock& lock, const std::shared_ptr<Window>& window);

// The class of a name, found without regard to case; null if there is none. A name may be an atom.
std::shared_ptr<WindowClass> FindWindowClass(const Lock& lock, const char* nameOrAtom, HINSTANCE instance);

} // namespace platform
