#include "link/device.h"

#include <array>

#include "common/scoped_value.h"
#include "link/command.h"
#include "link/exec_command.h"
#include "link/interface_list.h"
#include "log/log.h"

CCriticalSection g_csDevice;

namespace {

constexpr CLogSource Log{LOG_CDEVICE};

constexpr DWORD kProbeTimeout = 3000;

bool NamesHavePrefix()
{
    OSVERSIONINFOA Version{};
    Version.dwOSVersionInfoSize = sizeof Version;
    return !GetVersionExA(&Version) || Version.dwMajorVersion >= 4;
}

} // namespace

CDevice::CDevice() : m_Scan(*this, m_Watch, NamesHavePrefix())
{
    EnableMessages();
}

CDevice::~CDevice()
{
    ClosePort();
}

HANDLE CDevice::GetMDMHandle() const
{
    CLock Lock(g_csDevice);
    const auto pPort = m_pPort.Get();
    return pPort && !pPort->IsClosed() ? pPort->GetHandle() : nullptr;
}

bool CDevice::SetMDMHandle(const std::shared_ptr<COpenPort>& pPort)
{
    CLock Lock(g_csDevice);
    return m_pPort.Adopt(pPort);
}

void CDevice::CloseMDMHandle()
{
    CLock Lock(g_csDevice);
    if (const auto pPort = m_pPort.Get())
        pPort->Close();
}

bool CDevice::AdoptPort(const std::shared_ptr<COpenPort>& pPort)
{
    if (SetMDMHandle(pPort))
        return true;
    pPort->Close();
    return false;
}

void CDevice::ClosePort()
{
    CLock Lock(g_csDevice);
    CloseMDMHandle();
    m_pPort.Take();
}

void CDevice::Disconnect()
{
    if (CDeviceOwner* pOwner = GetDeviceOwner())
        pOwner->DestroyObjects();
    ClosePort();
}

void CDevice::NotifyDeviceState(bool bConnected) const
{
    if (CDeviceOwner* pOwner = GetDeviceOwner())
        pOwner->NotifyDeviceState(bConnected);
}

bool CDevice::IsBeingLost() const
{
    return m_pLostPort && m_pLostPort == GetPort();
}

void CDevice::LoseHandset()
{
    const auto pPort = GetPort();
    if (!IsBeingLost()) {
        CScopedValue Lost(m_pLostPort, pPort);
        NotifyDeviceState(false);
    }
    if (GetPort() == pPort) // and not one that was opened while the host was told
        Disconnect();
}

bool CDevice::ScanforDevices(const GUID& Class)
{
    if (GetMDMHandle())
        return true;
    Log.Comment("CDevice::ScanforDevices - Traversing all device");
    std::string strPath;
    if (!TraverseDevice(Class, &strPath, nullptr))
        return false;

    CLock Lock(g_csDevice);
    if (GetMDMHandle()) // an arrival came first
        return true;
    if (IsEqualGUID(Class, kModemInterface)) {
        if (!OpenModemPort(strPath)) {
            Log.Error("CDevice::ScanforDevices - OpenModemPort failed");
            return false;
        }
        Log.Comment("CDevice::ScanforDevices - OpenModemPort succeeded");
    } else if (IsEqualGUID(Class, kDiagnosticInterface)) {
        if (!OpenDiagPort(strPath)) {
            Log.Error("CDevice::ScanforDevices - OpenDiagPort failed");
            return false;
        }
        Log.Comment("CDevice::ScanforDevices - OpenDiagPort succeeded");
    } else {
        return false;
    }
    NotifyDeviceState(true);
    m_bWatchPorts = false;
    return true;
}

bool CDevice::TraverseDevice(const GUID& Class, std::string* pstrPath, const char* pszPort) const
{
    Log.Comment("CDevice::TraverseDevice - Scanning for devices...");
    return GetMDMHandle() || FindMakersInterface(Class, pstrPath, pszPort);
}

bool CDevice::IsUSBPort(const std::string& strPort) const
{
    std::string strPath;
    return TraverseDevice(kDiagnosticInterface, &strPath, strPort.c_str());
}

bool CDevice::CheckPort(HANDLE hPort, COpenPort* pPort) const
{
    Log.Comment("CDevice::CheckPort - executing PHN_Startup");
    const RequestHeader Request = MakeRequest(kCommandStartup);
    std::array<BYTE, kReplyBufferSize> abReply{};
    DWORD dwRetBufferLen = 0;
    DWORD dwErrSts = 0;
    if (!ExecCmd(hPort, &Request, sizeof Request, abReply.data(), static_cast<DWORD>(abReply.size()), &dwRetBufferLen,
                 &dwErrSts, kProbeTimeout, pPort)) {
        Log.Error("CDevice::CheckPort - ExecCmd returns false");
        return false;
    }
    Log.Comment("CDevice::CheckPort returns true");
    return true;
}

bool CDevice::CheckPort() const
{
    const HANDLE hPort = GetMDMHandle();
    if (!hPort) {
        Log.Error("CDevice::CheckPort - GetMDMHandle returns false");
        return false;
    }
    return CheckPort(hPort, nullptr);
}
