// Device interfaces of the stand-in: the list of those present, and the announcements of those that come and go.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include <windows.h>

#include <dbt.h>
#include <setupapi.h>

#include "platform/surroundings.h"

namespace {

using namespace std::string_literals;

constexpr GUID kClass{0x6B1D2E40, 0x5C77, 0x4A1E, {0x9D, 0x3A, 0x2F, 0x80, 0xC4, 0xE1, 0xB7, 0xA5}};
constexpr char kFirst[] = "usb#vid_fffe&pid_0001#1#{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5}";
constexpr char kSecond[] = "usb#vid_fffe&pid_0001#2#{6B1D2E40-5C77-4A1E-9D3A-2F80C4E1B7A5}";
constexpr char kOfOtherClass[] = "usb#vid_fffe&pid_0001#3#{2c7089aa-2e0e-11d1-b114-00c04fc2aae4}";

using Lines = std::vector<std::string>;

TEST(DeviceInterfaces, OfAClassAreListed)
{
    const Surroundings surroundings;
    for (const char* name : {kSecond, kOfOtherClass, kFirst, "com5", "{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7ag}"})
        surroundings.Plug(name);
    const HDEVINFO list = SetupDiGetClassDevsA(&kClass, nullptr, nullptr, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE);
    SP_DEVICE_INTERFACE_DATA entry{};
    EXPECT_FALSE(SetupDiEnumDeviceInterfaces(list, nullptr, &kClass, 0, &entry)) << "without its size";
    entry.cbSize = sizeof entry;
    constexpr std::size_t kPathAt = offsetof(SP_DEVICE_INTERFACE_DETAIL_DATA_A, DevicePath);
    Lines paths;
    for (DWORD index = 0; SetupDiEnumDeviceInterfaces(list, nullptr, &kClass, index, &entry); index++) {
        DWORD required = 0;
        EXPECT_FALSE(SetupDiGetDeviceInterfaceDetailA(list, &entry, nullptr, 0, &required, nullptr));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
        std::vector<ULONGLONG> storage(required / sizeof(ULONGLONG) + 1);
        auto* const detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_A*>(storage.data());
        detail->cbSize = sizeof *detail;
        EXPECT_FALSE(SetupDiGetDeviceInterfaceDetailA(list, &entry, detail, required - 1, nullptr, nullptr));
        EXPECT_TRUE(SetupDiGetDeviceInterfaceDetailA(list, &entry, detail, required, nullptr, nullptr));
        paths.emplace_back(reinterpret_cast<const char*>(detail) + kPathAt);
        EXPECT_EQ(paths.back().size(), required - kPathAt - 1);
    }
    EXPECT_EQ(paths, (Lines{"\\\\?\\"s + kFirst, "\\\\?\\"s + kSecond}));
    EXPECT_TRUE(SetupDiDestroyDeviceInfoList(list));
    EXPECT_FALSE(SetupDiDestroyDeviceInfoList(list));
}

// A window that is registered for kClass and notes what it is told, "+" and "-" before the path.
class DeviceNotifications : public testing::Test
{
protected:
    DeviceNotifications()
    {
        WNDCLASSA definition{};
        definition.lpfnWndProc = Procedure;
        definition.lpszClassName = "PlatformTestDevices";
        RegisterClassA(&definition);
        window = CreateWindowExA(0, definition.lpszClassName, "", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
        SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    ~DeviceNotifications() override
    {
        UnregisterDeviceNotification(registration);
        DestroyWindow(window);
        UnregisterClassA("PlatformTestDevices", nullptr);
    }

    HDEVNOTIFY Register() const
    {
        DEV_BROADCAST_DEVICEINTERFACE_A filter{};
        filter.dbcc_size = sizeof filter;
        filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
        filter.dbcc_classguid = kClass;
        return RegisterDeviceNotificationA(window, &filter, DEVICE_NOTIFY_WINDOW_HANDLE);
    }

    // What the window is told until there are as many lines; what is there after ten seconds otherwise.
    Lines Await(std::size_t count)
    {
        const ULONGLONG end = GetTickCount64() + 10000;
        MSG message{};
        while (told.size() < count && GetTickCount64() < end) {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
            EXPECT_FALSE(PeekMessageA(&message, window, 0, 0, PM_REMOVE)); // it is sent, not posted
        }
        return std::exchange(told, {});
    }

    Surroundings surroundings;
    HWND window = nullptr;
    HDEVNOTIFY registration = nullptr;
    Lines told;

private:
    static LRESULT CALLBACK Procedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message != WM_DEVICECHANGE)
            return DefWindowProcA(handle, message, wParam, lParam);
        DEV_BROADCAST_DEVICEINTERFACE_A record{};
        std::memcpy(&record, reinterpret_cast<const void*>(lParam), sizeof record);
        EXPECT_TRUE(record.dbcc_devicetype == DBT_DEVTYP_DEVICEINTERFACE && record.dbcc_classguid == kClass);
        const char* const name =
            reinterpret_cast<const char*>(lParam) + offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name);
        EXPECT_EQ(record.dbcc_size, sizeof record + std::strlen(name));
        auto* const self = reinterpret_cast<DeviceNotifications*>(GetWindowLongPtrA(handle, GWLP_USERDATA));
        self->told.push_back((wParam == DBT_DEVICEARRIVAL ? '+' : '-') + std::string(name + 4));
        return TRUE;
    }
};

TEST_F(DeviceNotifications, TellComingAndGoingHoweverItHappens)
{
    surroundings.Plug(kFirst);
    registration = Register(); // what is there already is not told
    surroundings.Plug(kOfOtherClass);
    surroundings.Plug("com5");
    surroundings.Plug(kSecond);
    EXPECT_EQ(Await(1), Lines{"+"s + kSecond});

    std::filesystem::create_symlink("/elsewhere", surroundings.devices / ".made");
    std::filesystem::rename(surroundings.devices / ".made", surroundings.devices / kSecond);
    EXPECT_EQ(Await(2), (Lines{"-"s + kSecond, "+"s + kSecond})); // another device

    std::filesystem::rename(surroundings.devices / kSecond, surroundings.root / "away");
    surroundings.Unplug(kFirst);
    EXPECT_EQ(Await(2), (Lines{"-"s + kSecond, "-"s + kFirst}));
}

TEST_F(DeviceNotifications, OutliveTheDirectory)
{
    std::filesystem::remove_all(surroundings.root);
    registration = Register(); // it is not even clear where the directory will be
    std::filesystem::create_directories(surroundings.devices);
    surroundings.Plug(kFirst);
    EXPECT_EQ(Await(1), Lines{"+"s + kFirst});
    std::filesystem::remove_all(surroundings.devices);
    EXPECT_EQ(Await(1), Lines{"-"s + kFirst});
}

} // namespace
