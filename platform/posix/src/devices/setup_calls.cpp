// SetupDi*: a list of interfaces is the device directory as it was when the list was made.
#include <setupapi.h>

#include <cstddef>
#include <cstring>

#include "base/win32_call.h"
#include "devices/device_directory.h"
#include "threads/handle_table.h"

using namespace platform;

namespace {

struct InterfaceList : Object
{
    GUID interfaceClass{};
    std::vector<std::string> paths;
};

constexpr DWORD kWholeSet = DIGCF_PRESENT | DIGCF_DEVICEINTERFACE;

} // namespace

HDEVINFO WINAPI SetupDiGetClassDevsA(const GUID* ClassGuid, PCSTR Enumerator, HWND, DWORD Flags)
{
    return Win32Call(Call::SetupDiGetClassDevsA, HDEVINFO{INVALID_HANDLE_VALUE}, [&]() -> HDEVINFO {
        if (!ClassGuid)
            throw Win32Error{ERROR_INVALID_PARAMETER};
        if (Enumerator || Flags != kWholeSet)
            throw Win32Error{ERROR_NOT_SUPPORTED};
        auto list = std::make_shared<InterfaceList>();
        list->interfaceClass = *ClassGuid;
        for (const std::string& name : DeviceNames(DeviceDirectory())) {
            if (InterfaceClassOf(name) == *ClassGuid)
                list->paths.push_back(InterfacePath(name));
        }
        return NewHandle(list);
    });
}

BOOL WINAPI SetupDiEnumDeviceInterfaces(HDEVINFO DeviceInfoSet, PSP_DEVINFO_DATA, const GUID* InterfaceClassGuid,
                                        DWORD MemberIndex, PSP_DEVICE_INTERFACE_DATA DeviceInterfaceData)
{
    return Win32Call(Call::SetupDiEnumDeviceInterfaces, FALSE, [&] {
        const auto list = FromHandle<InterfaceList>(DeviceInfoSet);
        if (!DeviceInterfaceData || DeviceInterfaceData->cbSize != sizeof *DeviceInterfaceData)
            throw Win32Error{ERROR_INVALID_USER_BUFFER};
        if (!InterfaceClassGuid)
            throw Win32Error{ERROR_INVALID_PARAMETER};
        if (MemberIndex >= list->paths.size() || *InterfaceClassGuid != list->interfaceClass)
            throw Win32Error{ERROR_NO_MORE_ITEMS};
        DeviceInterfaceData->InterfaceClassGuid = list->interfaceClass;
        DeviceInterfaceData->Flags = SPINT_ACTIVE;
        DeviceInterfaceData->Reserved = MemberIndex + ULONG_PTR{1};
        return TRUE;
    });
}

BOOL WINAPI SetupDiGetDeviceInterfaceDetailA(HDEVINFO DeviceInfoSet, PSP_DEVICE_INTERFACE_DATA DeviceInterfaceData,
                                             PSP_DEVICE_INTERFACE_DETAIL_DATA_A DeviceInterfaceDetailData,
                                             DWORD DeviceInterfaceDetailDataSize, PDWORD RequiredSize, PSP_DEVINFO_DATA)
{
    return Win32Call(Call::SetupDiGetDeviceInterfaceDetailA, FALSE, [&] {
        const auto list = FromHandle<InterfaceList>(DeviceInfoSet);
        if (!DeviceInterfaceData || DeviceInterfaceData->cbSize != sizeof *DeviceInterfaceData ||
            DeviceInterfaceData->Reserved == 0 || DeviceInterfaceData->Reserved > list->paths.size())
            throw Win32Error{ERROR_INVALID_PARAMETER};
        auto* const detail = DeviceInterfaceDetailData;
        const DWORD size = DeviceInterfaceDetailDataSize;
        if (detail ? detail->cbSize != sizeof *detail || size < sizeof *detail : size != 0)
            throw Win32Error{ERROR_INVALID_USER_BUFFER};
        const std::string& path = list->paths[DeviceInterfaceData->Reserved - 1];
        constexpr size_t kPathAt = offsetof(SP_DEVICE_INTERFACE_DETAIL_DATA_A, DevicePath);
        const size_t required = kPathAt + path.size() + 1;
        if (RequiredSize)
            *RequiredSize = static_cast<DWORD>(required);
        if (size < required)
            throw Win32Error{ERROR_INSUFFICIENT_BUFFER};
        std::memcpy(reinterpret_cast<char*>(detail) + kPathAt, path.c_str(), path.size() + 1);
        return TRUE;
    });
}

BOOL WINAPI SetupDiDestroyDeviceInfoList(HDEVINFO DeviceInfoSet)
{
    return Win32Call(Call::SetupDiDestroyDeviceInfoList, FALSE, [&] {
        FreeHandleOf<InterfaceList>(DeviceInfoSet);
        return TRUE;
    });
}
