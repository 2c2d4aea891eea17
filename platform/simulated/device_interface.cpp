#include "device_interface.h"

#include <dbt.h>

#include <atomic>
#include <cstddef>
#include <cstring>

namespace simulated {
namespace {

// Windows lets no record be sent without waiting, so this message is, and the record is made where it arrives.
constexpr char kChange[] = "PHNNRV simulated device change";

constinit std::atomic<HWND> told{nullptr};
constinit WNDPROC previous = nullptr; // on the window's thread

LRESULT PassOn(HWND window, WPARAM event)
{
    constexpr std::size_t kName = offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name);
    alignas(DEV_BROADCAST_DEVICEINTERFACE_A) std::byte bytes[kName + sizeof kInterfacePath]{};
    auto* record = reinterpret_cast<DEV_BROADCAST_DEVICEINTERFACE_A*>(bytes);
    record->dbcc_size = sizeof bytes;
    record->dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    record->dbcc_classguid = kInterfaceClass;
    std::memcpy(bytes + kName, kInterfacePath, sizeof kInterfacePath);
    return CallWindowProcA(previous, window, WM_DEVICECHANGE, event, reinterpret_cast<LPARAM>(record));
}

LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == RegisterWindowMessageA(kChange))
        return PassOn(window, wParam);
    return CallWindowProcA(previous, window, message, wParam, lParam);
}

} // namespace

void TellWindow(HWND window)
{
    previous =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(WindowProcedure)));
    told = window;
}

void TellNoWindow()
{
    if (const HWND window = told.exchange(nullptr))
        SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(previous));
}

void Announce(bool isArrival)
{
    if (const HWND window = told)
        SendNotifyMessageA(window, RegisterWindowMessageA(kChange),
                           isArrival ? DBT_DEVICEARRIVAL : DBT_DEVICEREMOVECOMPLETE, 0);
}

} // namespace simulated
