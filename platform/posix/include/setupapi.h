// Enumeration of the present device interfaces of a class: the entries of the device directory whose names end in the
// class's GUID.
#pragma once

#include <windows.h>

#define DIGCF_PRESENT 0x2u
#define DIGCF_DEVICEINTERFACE 0x10u
#define SPINT_ACTIVE 0x1u

// Packed as on Windows, where the 32-bit records have no padding.
#if UINTPTR_MAX == UINT32_MAX
#pragma pack(push, 1)
#else
#pragma pack(push, 8)
#endif

typedef PVOID HDEVINFO;

typedef struct _SP_DEVINFO_DATA
{
    DWORD cbSize;
    GUID ClassGuid;
    DWORD DevInst;
    ULONG_PTR Reserved;
} SP_DEVINFO_DATA, *PSP_DEVINFO_DATA;

typedef struct _SP_DEVICE_INTERFACE_DATA
{
    DWORD cbSize;
    GUID InterfaceClassGuid;
    DWORD Flags;
    ULONG_PTR Reserved;
} SP_DEVICE_INTERFACE_DATA, *PSP_DEVICE_INTERFACE_DATA;

typedef struct _SP_DEVICE_INTERFACE_DETAIL_DATA_A
{
    DWORD cbSize;
    CHAR DevicePath[1];
} SP_DEVICE_INTERFACE_DETAIL_DATA_A, *PSP_DEVICE_INTERFACE_DETAIL_DATA_A;

#pragma pack(pop)

PHN_PLATFORM_BEGIN
WINBASEAPI HDEVINFO WINAPI SetupDiGetClassDevsA(const GUID* ClassGuid, PCSTR Enumerator, HWND hwndParent, DWORD Flags)
    PHN_WIN32_NAME(SetupDiGetClassDevsA);
WINBASEAPI BOOL WINAPI SetupDiEnumDeviceInterfaces(HDEVINFO DeviceInfoSet, PSP_DEVINFO_DATA DeviceInfoData,
                                                   const GUID* InterfaceClassGuid, DWORD MemberIndex,
                                                   PSP_DEVICE_INTERFACE_DATA DeviceInterfaceData)
    PHN_WIN32_NAME(SetupDiEnumDeviceInterfaces);
WINBASEAPI BOOL WINAPI SetupDiGetDeviceInterfaceDetailA(HDEVINFO DeviceInfoSet,
                                                        PSP_DEVICE_INTERFACE_DATA DeviceInterfaceData,
                                                        PSP_DEVICE_INTERFACE_DETAIL_DATA_A DeviceInterfaceDetailData,
                                                        DWORD DeviceInterfaceDetailDataSize, PDWORD RequiredSize,
                                                        PSP_DEVINFO_DATA DeviceInfoData)
    PHN_WIN32_NAME(SetupDiGetDeviceInterfaceDetailA);
WINBASEAPI BOOL WINAPI SetupDiDestroyDeviceInfoList(HDEVINFO DeviceInfoSet)
    PHN_WIN32_NAME(SetupDiDestroyDeviceInfoList);
PHN_PLATFORM_END
