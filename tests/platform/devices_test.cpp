// Device interfaces of the stand-in: the list of those present.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <windows.h>

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

} // namespace
