// Making, finding and destroying windows.
#include <strings.h>

#include "base/win32_call.h"
#include "messages/message_queue.h"

using namespace platform;

namespace {

void Destroy(Lock& lock, const std::shared_ptr<Window>& window)
{
    for (const UINT farewell : {UINT{WM_DESTROY}, UINT{WM_NCDESTROY}}) {
        if (!window->destroyed)
            CallWindow(lock, *window, farewell, 0, 0);
    }
    RemoveWindow(lock, window);
}

// The procedure may refuse the window at either of its first two messages.
bool Greet(Lock& lock, const std::shared_ptr<Window>& window, const CREATESTRUCTA& creation)
{
    const auto parameter = reinterpret_cast<LPARAM>(&creation);
    if (!CallWindow(lock, *window, WM_NCCREATE, 0, parameter)) {
        RemoveWindow(lock, window);
    } else if (!window->destroyed && CallWindow(lock, *window, WM_CREATE, 0, parameter) == -1) {
        Destroy(lock, window);
    }
    return !window->destroyed;
}

bool SameName(const std::string& name, const char* wanted)
{
    return !wanted || strcasecmp(name.c_str(), wanted) == 0;
}

LONG_PTR LongOf(const Window& window, int index)
{
    switch (index) {
    case GWLP_USERDATA:
        return window.userData;
    case GWLP_WNDPROC:
        return reinterpret_cast<LONG_PTR>(window.procedure);
    default:
        throw Win32Error{ERROR_INVALID_INDEX};
    }
}

} // namespace

HWND WINAPI CreateWindowExA(DWORD dwExStyle, LPCSTR lpClassName, LPCSTR lpWindowName, DWORD dwStyle, int X, int Y,
                            int nWidth, int nHeight, HWND hWndParent, HMENU hMenu, HINSTANCE hInstance, LPVOID lpParam)
{
    return Win32Call(Call::CreateWindowExA, HWND{}, [&]() -> HWND {
        const CREATESTRUCTA creation{.lpCreateParams = lpParam,
                                     .hInstance = hInstance,
                                     .hMenu = hMenu,
                                     .hwndParent = hWndParent,
                                     .cy = nHeight,
                                     .cx = nWidth,
                                     .y = Y,
                                     .x = X,
                                     .style = static_cast<LONG>(dwStyle),
                                     .lpszName = lpWindowName,
                                     .lpszClass = lpClassName,
                                     .dwExStyle = dwExStyle};
        Lock lock = TakeBaseLock();
        const auto kind = FindWindowClass(lock, lpClassName, hInstance);
        if (!kind)
            throw Win32Error{ERROR_CANNOT_FIND_WND_CLASS};
        const auto& queue = MessageQueue::Current(lock);
        const auto window = std::make_shared<Window>(kind, queue, lpWindowName ? lpWindowName : "");
        window->handle = static_cast<HWND>(NewHandle(window));
        kind->windows++;
        queue->Adopt(lock, window);
        return Greet(lock, window, creation) ? window->handle : nullptr;
    });
}

BOOL WINAPI DestroyWindow(HWND hWnd)
{
    return Win32Call(Call::DestroyWindow, FALSE, [&] {
        Lock lock = TakeBaseLock();
        Destroy(lock, OwnWindowOf(lock, hWnd));
        return TRUE;
    });
}

LONG_PTR WINAPI GetWindowLongPtrA(HWND hWnd, int nIndex)
{
    return Win32Call(Call::GetWindowLongPtrA, LONG_PTR{0}, [&] {
        const Lock lock = TakeBaseLock();
        const auto window = WindowOf(lock, hWnd);
        return LongOf(*window, nIndex);
    });
}

LONG_PTR WINAPI SetWindowLongPtrA(HWND hWnd, int nIndex, LONG_PTR dwNewLong)
{
    return Win32Call(Call::SetWindowLongPtrA, LONG_PTR{0}, [&] {
        const Lock lock = TakeBaseLock();
        const auto window = WindowOf(lock, hWnd);
        const LONG_PTR previous = LongOf(*window, nIndex);
        if (nIndex == GWLP_WNDPROC)
            window->procedure = reinterpret_cast<WNDPROC>(dwNewLong);
        else
            window->userData = dwNewLong;
        return previous;
    });
}

HWND WINAPI FindWindowExA(HWND hWndParent, HWND hWndChildAfter, LPCSTR lpszClass, LPCSTR lpszWindow)
{
    return Win32Call(Call::FindWindowExA, HWND{}, [&]() -> HWND {
        if (hWndParent) // no window has children
            return nullptr;
        const auto windows = MessageQueue::AllWindows(TakeBaseLock());
        bool started = !hWndChildAfter;
        for (const auto& window : windows) {
            if (started && SameName(window->windowClass->name, lpszClass) && SameName(window->title, lpszWindow))
                return window->handle;
            started = started || window->handle == hWndChildAfter;
        }
        return nullptr;
    });
}

LRESULT WINAPI DefWindowProcA(HWND hWnd, UINT Msg, WPARAM, LPARAM)
{
    switch (Msg) {
    case WM_NCCREATE:
    case WM_DEVICECHANGE:
    case WM_POWERBROADCAST:
        return TRUE;
    case WM_CLOSE:
        DestroyWindow(hWnd);
        return 0;
    default:
        return 0;
    }
}
