#include "link/device_window.h"

#include <exception>

#include "log/host_check.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_CDEVICE};

constexpr char kWindowClass[] = "PHNNRVDeviceWindow";
constexpr char kPollMessage[] = "WM_CALLBACK_POLL_MSG";

// The module that this code lies in, whatever its name: the window class belongs to it, and goes with it.
HINSTANCE OwnModule()
{
    HMODULE hModule = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       kWindowClass, &hModule);
    return hModule;
}

} // namespace

CDeviceWindow::CDeviceWindow() : m_hModule(OwnModule()), m_uPollMessage(GetPollMessage())
{
    WNDCLASSA WindowClass{};
    WindowClass.lpfnWndProc = WindowProcedure;
    WindowClass.hInstance = m_hModule;
    WindowClass.lpszClassName = kWindowClass;
    RegisterClassA(&WindowClass);
    m_hWnd = CreateWindowExA(0, kWindowClass, "", 0, 10, 10, 90, 90, nullptr, nullptr, m_hModule, nullptr);
    if (!m_hWnd) {
        Log.Error("CDevice::CDevice - Unable to create the window. Last error 0x%X", GetLastError());
        UnregisterClassA(kWindowClass, m_hModule);
    }
}

CDeviceWindow::~CDeviceWindow()
{
    DestroyDeviceWindow();
}

void CDeviceWindow::EnableMessages()
{
    if (!m_hWnd)
        return;
    SetWindowLongPtrA(m_hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    m_bListening = m_uPollMessage && GetWindowLongPtrA(m_hWnd, GWLP_USERDATA) == reinterpret_cast<LONG_PTR>(this);
    if (!m_bListening)
        Log.Error("CDevice::CDevice - Unable to receive messages. Last error 0x%X", GetLastError());
}

UINT CDeviceWindow::GetPollMessage()
{
    return RegisterWindowMessageA(kPollMessage);
}

void CDeviceWindow::PumpMessage() const
{
    MSG Message{};
    if (!m_hWnd || !PeekMessageA(&Message, m_hWnd, 0, 0, PM_REMOVE))
        return;
    if (Message.message == WM_QUIT) {
        PostQuitMessage(static_cast<int>(Message.wParam));
        return;
    }
    TranslateMessage(&Message);
    DispatchMessageA(&Message);
}

void CDeviceWindow::DestroyDeviceWindow()
{
    if (!m_hWnd)
        return;
    SetWindowLongPtrA(m_hWnd, GWLP_USERDATA, 0);
    DestroyWindow(m_hWnd);
    m_hWnd = nullptr;
    UnregisterClassA(kWindowClass, m_hModule);
}

LRESULT CALLBACK CDeviceWindow::WindowProcedure(HWND hWnd, UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    auto* pWindow = reinterpret_cast<CDeviceWindow*>(GetWindowLongPtrA(hWnd, GWLP_USERDATA));
    if (!pWindow)
        return DefWindowProcA(hWnd, uMessage, wParam, lParam);
    // Nothing may be thrown through the window system.
    try {
        const CHostDispatch HostDispatch;
        return pWindow->Dispatch(uMessage, wParam, lParam);
    } catch (const std::exception&) {
        Log.Error("CDevice - Out of memory in message %d", uMessage);
        return TRUE;
    }
}

LRESULT CDeviceWindow::Dispatch(UINT uMessage, WPARAM wParam, LPARAM lParam)
{
    switch (uMessage) {
    case WM_DEVICECHANGE:
        return OnDeviceChange(static_cast<UINT>(wParam), reinterpret_cast<const void*>(lParam));
    case WM_TIMER:
        OnTimer(wParam);
        return 0;
    case WM_CLOSE: // asks every top-level window of a program that is to end; without this one removals go unnoticed
        return 0;
    case WM_POWERBROADCAST:
        return OnBroadCasting(static_cast<UINT>(wParam));
    default:
        break;
    }
    if (uMessage == m_uPollMessage && m_uPollMessage) {
        OnPollMessage(lParam);
        return 0;
    }
    return DefWindowProcA(m_hWnd, uMessage, wParam, lParam);
}
