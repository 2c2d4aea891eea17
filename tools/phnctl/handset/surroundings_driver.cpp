#include "phnctl/handset/surroundings.h"

#include <windows.h>

#include <setupapi.h>

namespace phnctl {

namespace {

constexpr GUID kDiagnosticClass = {0x6B1D2E40, 0x5C77, 0x4A1E, {0x9D, 0x3A, 0x2F, 0x80, 0xC4, 0xE1, 0xB7, 0xA5}};
constexpr GUID kModemClass = {0x2C7089AA, 0x2E0E, 0x11D1, {0xB1, 0x14, 0x00, 0xC0, 0x4F, 0xC2, 0xAA, 0xE4}};

std::string InterfacePath(HDEVINFO set, SP_DEVICE_INTERFACE_DATA& data)
{
    DWORD size = 0;
    SetupDiGetDeviceInterfaceDetailA(set, &data, nullptr, 0, &size, nullptr);
    std::vector<char> room(size < sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_A) ? sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_A)
                                                                            : size);
    auto* detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_A*>(room.data());
    detail->cbSize = sizeof *detail;
    if (!SetupDiGetDeviceInterfaceDetailA(set, &data, detail, size, nullptr, nullptr))
        return {};
    return detail->DevicePath;
}

void AddInterfaces(const GUID& interfaceClass, const char* kind, std::vector<PortEntry>& entries)
{
    const HDEVINFO set = SetupDiGetClassDevsA(&interfaceClass, nullptr, nullptr, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE);
    if (set == INVALID_HANDLE_VALUE)
        return;
    SP_DEVICE_INTERFACE_DATA data{};
    data.cbSize = sizeof data;
    for (DWORD index = 0; SetupDiEnumDeviceInterfaces(set, nullptr, &interfaceClass, index, &data); ++index) {
        const std::string path = InterfacePath(set, data);
        if (path.find("vid_fffe") != std::string::npos)
            entries.push_back({path, path, kind});
    }
    SetupDiDestroyDeviceInfoList(set);
}

void AddSerialPorts(std::vector<PortEntry>& entries)
{
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ, &key) != ERROR_SUCCESS)
        return;
    for (DWORD index = 0;; ++index) {
        char name[256];
        char port[256] = {};
        DWORD nameSize = sizeof name;
        DWORD portSize = sizeof port - 1;
        if (RegEnumValueA(key, index, name, &nameSize, nullptr, nullptr, reinterpret_cast<BYTE*>(port), &portSize) !=
            ERROR_SUCCESS)
            break;
        entries.push_back({port, std::string("\\\\.\\") + port, "serial port"});
    }
    RegCloseKey(key);
}

} // namespace

Surroundings LookAround()
{
    Surroundings found;
    found.place = "the handset driver's interfaces and the serial ports";
    AddInterfaces(kDiagnosticClass, "USB interface", found.entries);
    AddInterfaces(kModemClass, "modem interface", found.entries);
    AddSerialPorts(found.entries);
    if (found.entries.empty()) {
        found.problem = "none is present";
        found.remedy = "plug the handset in and install its driver, or pair it by Bluetooth";
    }
    return found;
}

std::vector<Finding> LookAtSystem()
{
    return {};
}

std::string SimulatorCommand()
{
    return {};
}

} // namespace phnctl
