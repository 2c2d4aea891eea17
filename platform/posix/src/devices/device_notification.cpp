// Device notifications: WM_DEVICECHANGE is laid into the queue of every registered window whose class of interface has
// come or gone, and runs on the window's own thread when that looks for messages.
#include <dbt.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <vector>

#include "base/win32_call.h"
#include "devices/device_directory.h"
#include "devices/device_watch.h"
#include "messages/message_queue.h"

using namespace platform;

namespace {

struct Registration : Object
{
    Registration(std::shared_ptr<Window> recipient, const GUID& wanted)
        : window(std::move(recipient)), interfaceClass(wanted)
    {
    }

    void OnLastHandleClosed() override;

    const std::shared_ptr<Window> window;
    const GUID interfaceClass;
};

// Under the base lock. Never destroyed: the service thread may still announce while the process ends.
struct Notifications
{
    std::vector<Registration*> registered;
    std::unique_ptr<DeviceWatch> watch; // while anybody is registered
};

Notifications& TheNotifications()
{
    static Notifications& notifications = *new Notifications;
    return notifications;
}

std::string BroadcastOf(const GUID& interfaceClass, const std::string& path)
{
    constexpr size_t kNameAt = offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name);
    std::string data(sizeof(DEV_BROADCAST_DEVICEINTERFACE_A) + path.size(), '\0');
    DEV_BROADCAST_DEVICEINTERFACE_A broadcast{};
    broadcast.dbcc_size = static_cast<DWORD>(data.size());
    broadcast.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    broadcast.dbcc_classguid = interfaceClass;
    std::memcpy(data.data(), &broadcast, kNameAt);
    std::memcpy(data.data() + kNameAt, path.data(), path.size());
    return data;
}

void Announce(const Lock& lock, const std::string& name, bool arrived)
{
    const auto interfaceClass = InterfaceClassOf(name);
    for (const Registration* const registration : TheNotifications().registered) {
        const auto& window = registration->window;
        if (window->destroyed || registration->interfaceClass != *interfaceClass)
            continue;
        const auto message = std::make_shared<SentMessage>();
        message->window = window;
        message->message = WM_DEVICECHANGE;
        message->wParam = arrived ? DBT_DEVICEARRIVAL : DBT_DEVICEREMOVECOMPLETE;
        message->data = BroadcastOf(*interfaceClass, InterfacePath(name));
        message->lParam = reinterpret_cast<LPARAM>(message->data.data());
        window->queue->Send(lock, message);
    }
}

void Registration::OnLastHandleClosed()
{
    const Lock lock = TakeBaseLock();
    auto& [registered, watch] = TheNotifications();
    std::erase(registered, this);
    if (registered.empty() && watch) {
        watch->End(lock);
        watch.reset();
    }
}

} // namespace

HDEVNOTIFY WINAPI RegisterDeviceNotificationA(HANDLE hRecipient, LPVOID NotificationFilter, DWORD Flags)
{
    return Win32Call(Call::RegisterDeviceNotificationA, HDEVNOTIFY{}, [&]() -> HDEVNOTIFY {
        if (!NotificationFilter || Flags != DEVICE_NOTIFY_WINDOW_HANDLE)
            throw Win32Error{ERROR_INVALID_PARAMETER};
        DEV_BROADCAST_DEVICEINTERFACE_A filter{};
        std::memcpy(&filter, NotificationFilter, sizeof(DEV_BROADCAST_HDR));
        if (filter.dbcc_size < sizeof filter || filter.dbcc_devicetype != DBT_DEVTYP_DEVICEINTERFACE)
            throw Win32Error{ERROR_INVALID_DATA};
        std::memcpy(&filter, NotificationFilter, sizeof filter);
        const Lock lock = TakeBaseLock();
        auto window = WindowOf(lock, static_cast<HWND>(hRecipient));
        const auto registration = std::make_shared<Registration>(std::move(window), filter.dbcc_classguid);
        auto& [registered, watch] = TheNotifications();
        if (!watch)
            watch = std::make_unique<DeviceWatch>(lock, DeviceDirectory(), Announce);
        registered.reserve(registered.size() + 1);
        const HANDLE handle = NewHandle(registration);
        registered.push_back(registration.get());
        return handle;
    });
}

BOOL WINAPI UnregisterDeviceNotification(HDEVNOTIFY Handle)
{
    return Win32Call(Call::UnregisterDeviceNotification, FALSE, [&] {
        FreeHandleOf<Registration>(Handle);
        return TRUE;
    });
}
