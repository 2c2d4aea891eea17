#include "link/interface_list.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

#include "common/ascii_case.h"
#include "link/machine_key.h"
#include "log/log.h"

const GUID kDiagnosticInterface{0x6B1D2E40, 0x5C77, 0x4A1E, {0x9D, 0x3A, 0x2F, 0x80, 0xC4, 0xE1, 0xB7, 0xA5}};
const GUID kModemInterface{0x2C7089AA, 0x2E0E, 0x11D1, {0xB1, 0x14, 0x00, 0xC0, 0x4F, 0xC2, 0xAA, 0xE4}};

namespace {

constexpr CLogSource Log{LOG_CDEVICE};

constexpr size_t kPathSize = 260; // of an interface path or a key path, with its terminator

} // namespace

CInterfaceList::CInterfaceList(const GUID& Class)
    : m_Class(Class), m_hList(SetupDiGetClassDevsA(&m_Class, nullptr, nullptr, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE))
{
    if (m_hList == INVALID_HANDLE_VALUE)
        Log.Error("CDevice::TraverseDevice - SetupDiGetClassDevs returned an invalid handle. Last error 0x%X",
                  GetLastError());
}

CInterfaceList::~CInterfaceList()
{
    if (m_hList != INVALID_HANDLE_VALUE)
        SetupDiDestroyDeviceInfoList(m_hList);
}

bool CInterfaceList::Next(std::string* pstrPath)
{
    if (m_hList == INVALID_HANDLE_VALUE)
        return false;
    do {
        SP_DEVICE_INTERFACE_DATA Interface{};
        Interface.cbSize = sizeof Interface;
        if (!SetupDiEnumDeviceInterfaces(m_hList, nullptr, &m_Class, m_dwIndex++, &Interface)) {
            Log.Error("CDevice::TraverseDevice - SetupDiEnumDeviceInterfaces returned false. Last error 0x%X",
                      GetLastError());
            return false;
        }
        if (!GetDetail(&Interface, pstrPath))
            return false;
    } while (pstrPath->size() >= kPathSize);
    return true;
}

bool CInterfaceList::GetDetail(SP_DEVICE_INTERFACE_DATA* pInterface, std::string* pstrPath)
{
    DWORD dwSize = 0;
    if (!SetupDiGetDeviceInterfaceDetailA(m_hList, pInterface, nullptr, 0, &dwSize, nullptr) &&
        GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
        Log.Error("CDevice::TraverseDevice - 1st SetupDiGetDeviceInterfaceDetail returned false. Last error 0x%X",
                  GetLastError());
        return false;
    }
    constexpr size_t uPath = offsetof(SP_DEVICE_INTERFACE_DETAIL_DATA_A, DevicePath);
    const size_t uBytes = std::max<size_t>(dwSize, sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_A));
    const std::unique_ptr<std::byte[]> pBytes(new (std::nothrow) std::byte[uBytes]());
    if (!pBytes) {
        Log.Error("CDevice::TraverseDevice - pDeviceDetail is NULL");
        return false;
    }
    auto* pDetail = new (pBytes.get()) SP_DEVICE_INTERFACE_DETAIL_DATA_A{};
    pDetail->cbSize = sizeof *pDetail;
    if (!SetupDiGetDeviceInterfaceDetailA(m_hList, pInterface, pDetail, static_cast<DWORD>(uBytes), nullptr, nullptr)) {
        Log.Error("CDevice::TraverseDevice - 2nd SetupDiGetDeviceInterfaceDetail returned false. Last error 0x%X",
                  GetLastError());
        return false;
    }
    const std::string_view strField(reinterpret_cast<const char*>(pBytes.get()) + uPath, uBytes - uPath);
    *pstrPath = LowerCase(strField.substr(0, strField.find('\0')));
    return true;
}

bool IsMakersDevice(std::string_view strName)
{
    return strName.find("vid_fffe") != std::string_view::npos;
}

std::string UsbParametersKey(std::string_view strPath)
{
    // prefix#device#instance#{class} becomes device\instance: two key levels.
    if (const size_t uFirst = strPath.find('#'); uFirst != std::string_view::npos)
        strPath.remove_prefix(uFirst + 1);
    strPath = strPath.substr(0, strPath.rfind('#'));
    std::string strDevice(strPath);
    if (const size_t uLast = strDevice.rfind('#'); uLast != std::string::npos)
        strDevice[uLast] = '\\';
    const std::string strKey = "SYSTEM\\CurrentControlSet\\Enum\\USB\\" + strDevice + "\\Device Parameters";
    return strKey.size() < kPathSize ? strKey : std::string();
}

bool CheckIfUSB(std::string_view strPath, const std::string& strPort)
{
    const std::string strKey = UsbParametersKey(strPath);
    if (strKey.empty())
        return false;
    Log.Comment("CDevice::CheckIfUSB - opening reg %s", strKey.c_str());
    const CMachineKey Key(strKey);
    std::string strValue;
    if (!Key.ReadString("PortName", &strValue))
        return false;
    Log.Comment("CDevice::CheckIfUSB - comparing %s with reg %s", strPort.c_str(), strValue.c_str());
    const size_t uBackslash = strPort.rfind('\\');
    if (uBackslash == std::string::npos || !EqualsIgnoringCase(strPort.substr(uBackslash + 1), strValue))
        return false;
    Log.Comment("CDevice::CheckIfUSB - port %s found in USB", strValue.c_str());
    return true;
}

bool FindMakersInterface(const GUID& Class, std::string* pstrPath, const char* pszPort)
{
    CInterfaceList List(Class);
    while (List.Next(pstrPath)) {
        if (IsMakersDevice(*pstrPath) && (!pszPort || CheckIfUSB(*pstrPath, pszPort)))
            return true;
    }
    return false;
}
