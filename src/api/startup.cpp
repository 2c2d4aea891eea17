#include "api/startup.h"

#include <array>

#include "api/plugin_instance.h"
#include "link/command.h"
#include "link/device.h"
#include "link/exec_command.h"
#include "log/host_check.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_CCALDERAPP};

constexpr int kPortTries = 300;
constexpr DWORD kPortPause = 50;

HANDLE AwaitPort(const CDevice& Device)
{
    for (int nTry = 0; nTry < kPortTries; ++nTry) {
        if (const HANDLE hDevice = Device.GetMDMHandle())
            return hDevice;
        Sleep(kPortPause);
        PumpDeviceWindow();
    }
    return nullptr;
}

bool SendRequest(HANDLE hDevice, DWORD dwCommand, DWORD* pdwErrSts)
{
    const RequestHeader Request = MakeRequest(dwCommand);
    std::array<BYTE, kReplyBufferSize> abReply{};
    DWORD dwRetBufferLen = 0;
    return ExecCmd(hDevice, &Request, sizeof Request, abReply.data(), static_cast<DWORD>(abReply.size()),
                   &dwRetBufferLen, pdwErrSts, kServiceTimeout, nullptr);
}

// Releases the service objects when its scope is left, by an exception too, unless they are to be kept.
class CObjectsRelease
{
public:
    explicit CObjectsRelease(CPluginInstance& Instance) : m_Instance(Instance) {}
    ~CObjectsRelease()
    {
        if (m_bKeep)
            return;
        CCallbackLocks CallbackLocks;
        m_Instance.DestroyObjects();
    }
    CObjectsRelease(const CObjectsRelease&) = delete;
    CObjectsRelease& operator=(const CObjectsRelease&) = delete;

    void Keep() { m_bKeep = true; }

private:
    CPluginInstance& m_Instance;
    bool m_bKeep = false;
};

} // namespace

void PumpDeviceWindow()
{
    CPluginInstance* pInstance = GetInstance();
    const auto pDevice = pInstance ? pInstance->m_pDeviceObject.Get() : nullptr;
    if (pDevice)
        pDevice->PumpMessage();
}

PHN_ERROR Startup()
{
    CHostCheck::OnStartup();
    CPluginInstance* pInstance = GetInstance();
    const auto pDevice = pInstance ? pInstance->m_pDeviceObject.Get() : nullptr;
    if (!pDevice) {
        Log.Error("PHN_Startup - pInstance or pInstance->m_pDeviceObject is NULL.");
        return PHN_ERROR_NO_DEVICE;
    }
    const HANDLE hDevice = AwaitPort(*pDevice);
    if (!hDevice) {
        Log.Error("PHN_Startup - hDevice is NULL.");
        return PHN_ERROR_NO_DEVICE;
    }
    DWORD dwErrSts = 0;
    if (!SendRequest(hDevice, kCommandStartup, &dwErrSts)) {
        Log.Error("PHN_Startup - ExecCmd failed with dwErrSts = %d(0x%X).", dwErrSts, dwErrSts);
        return PHN_ERROR_COMMUNICATION;
    }
    CObjectsRelease Release(*pInstance);
    if (!pInstance->CreateObjects()) {
        Log.Error("PHN_Startup - CreateObjects returned false.");
        return PHN_ERROR_FAILED;
    }
    if (pInstance->GetVersion() != eVerNone) {
        Log.Error("PHN_Startup - Model not supported.");
        return PHN_ERROR_NOT_SUPPORTED;
    }
    Release.Keep();
    return PHN_ERROR_NONE;
}

PHN_ERROR Shutdown()
{
    CPluginInstance* pInstance = GetInstance();
    const auto pDevice = pInstance ? pInstance->m_pDeviceObject.Get() : nullptr;
    if (!pDevice) {
        Log.Error("PHN_Shutdown - pInstance or pInstance->m_pDeviceObject is NULL.");
        return PHN_ERROR_NO_DEVICE;
    }
    const HANDLE hDevice = pDevice->GetMDMHandle();
    if (!hDevice) {
        Log.Error("PHN_Shutdown - hDevice is NULL.");
        return PHN_ERROR_NO_DEVICE;
    }
    if (!pInstance->m_pConnectionStatusObject.Get()) {
        Log.Error("PHN_Shutdown - pInstance->m_pConnectionStatusObject is NULL.");
        return PHN_ERROR_NO_SERVICE_OBJECT;
    }
    const CObjectsRelease Release(*pInstance);
    DWORD dwErrSts = 0;
    SendRequest(hDevice, kCommandShutdown, &dwErrSts);
    return PHN_ERROR_NONE;
}
