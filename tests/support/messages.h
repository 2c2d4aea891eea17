// The messages of a test's thread, and those that the system sends to a window.
#pragma once

#include <windows.h>

#include <dbt.h>

#include <chrono>
#include <cstddef>
#include <cstring>
#include <new>
#include <string>
#include <vector>

inline void DispatchPending()
{
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageA(&message);
}

// Dispatches messages until the condition holds; false if it does not within ten seconds.
template <typename Condition>
bool PumpUntil(Condition condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
        DispatchPending();
    }
    return true;
}

// Tells the window of a device interface that has come or gone.
inline LRESULT SendInterfaceMessage(HWND window, WPARAM event, const GUID& interfaceClass, const std::string& path)
{
    std::vector<std::byte> bytes(sizeof(DEV_BROADCAST_DEVICEINTERFACE_A) + path.size());
    auto* record = new (bytes.data()) DEV_BROADCAST_DEVICEINTERFACE_A{};
    record->dbcc_size = static_cast<DWORD>(bytes.size());
    record->dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    record->dbcc_classguid = interfaceClass;
    std::memcpy(bytes.data() + offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name), path.c_str(), path.size() + 1);
    return SendMessageA(window, WM_DEVICECHANGE, event, reinterpret_cast<LPARAM>(record));
}
