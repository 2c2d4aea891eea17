#include "link/exec_command.h"

#include <memory>

#include "link/command.h"
#include "link/device_owner.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_READWRITE};

// The given port, or the current one, of which a reference is kept for as long as it is in use.
class CPortChoice
{
public:
    explicit CPortChoice(COpenPort* pGiven) : m_pPort(pGiven)
    {
        CDeviceOwner* pOwner = pGiven ? nullptr : GetDeviceOwner();
        if (!pOwner)
            return;
        m_pCurrent = pOwner->GetCurrentPort();
        m_pPort = m_pCurrent.get();
    }

    COpenPort* Get() const { return m_pPort; }

private:
    std::shared_ptr<COpenPort> m_pCurrent;
    COpenPort* m_pPort;
};

} // namespace

void CreateCommandLock()
{
    g_csCommand.Create();
}

void DestroyCommandLock()
{
    g_csCommand.Destroy();
}

bool ExecCmd(HANDLE hDevice, const void* pRequest, DWORD dwRequestLen, void* pReply, DWORD dwReplySize,
             DWORD* pdwRetBufferLen, DWORD* pdwErrSts, DWORD dwTimeout, COpenPort* pPort)
{
    CLock Lock(g_csCommand);
    const CPortChoice Port(pPort);
    if (!WriteDevice(hDevice, pRequest, dwRequestLen, pdwErrSts, Port.Get())) {
        Log.Error("ExecCmd - Writing to the device failed");
        return false;
    }
    if (!ReadDevice(hDevice, pReply, dwReplySize, pdwRetBufferLen, dwTimeout, pdwErrSts, Port.Get())) {
        Log.Error("ExecCmd - Reading from the device failed");
        return false;
    }
    if (*pdwRetBufferLen > dwReplySize) {
        Log.Error("ExecCmd - Returned data(%d) is longer than allocated buffer(%d)", *pdwRetBufferLen, dwReplySize);
        return false;
    }
    return true;
}

bool WriteDevice(HANDLE hDevice, const void* pRequest, DWORD dwRequestLen, DWORD* pdwErrSts, COpenPort* pPort)
{
    *pdwErrSts = 0;
    if (!pRequest) {
        Log.Error("WriteDevice - One of the input pointer is NULL.");
        return false;
    }
    if (dwRequestLen > kMaxRequest) {
        Log.Error("WriteDevice - Buffer length exceeds maximum limit.");
        return false;
    }
    if (hDevice == INVALID_HANDLE_VALUE) {
        Log.Error("WriteDevice - Handle is NULL.");
        return false;
    }
    const CPortChoice Port(pPort);
    if (!Port.Get()) {
        Log.Error(
            "WriteDevice - pInstance, pInstance->m_pDeviceObject or pInstance->m_pDeviceObject->GetPort() is NULL.");
        return false;
    }
    DWORD dwWritten = 0;
    if (!Port.Get()->Write(hDevice, pRequest, dwRequestLen, &dwWritten, pdwErrSts)) {
        Log.Error("WriteDevice - pInstance->m_pDeviceObject->GetPort()->Write returned false.");
        return false;
    }
    return true;
}

bool ReadDevice(HANDLE hDevice, void* pReply, DWORD dwReplySize, DWORD* pdwReplyLen, DWORD dwTimeout, DWORD* pdwErrSts,
                COpenPort* pPort)
{
    *pdwReplyLen = 0;
    if (!pReply || dwReplySize == 0) {
        Log.Error("ReadDevice - One of the input pointer is NULL.");
        return false;
    }
    if (dwReplySize > kMaxReply) {
        Log.Error("ReadDevice - Buffer length exceeds maximum limit.");
        return false;
    }
    if (hDevice == INVALID_HANDLE_VALUE) {
        Log.Error("ReadDevice - Handle is NULL.");
        return false;
    }
    const CPortChoice Port(pPort);
    if (!Port.Get()) {
        Log.Error(
            "ReadDevice - pInstance, pInstance->m_pDeviceObject or pInstance->m_pDeviceObject->GetPort() is NULL.");
        return false;
    }
    if (!Port.Get()->Read(hDevice, pReply, dwReplySize, pdwReplyLen, pdwErrSts, dwTimeout)) {
        Log.Error("ReadDevice - pInstance->m_pDeviceObject->GetPort()->Read returned false.");
        return false;
    }
    return true;
}
