#include "link/modem_port.h"

#include <cstring>

#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_CPORT};

} // namespace

bool MP::Write(HANDLE hPort, const void* pData, DWORD dwLength, DWORD* pdwWritten, DWORD* pdwError)
{
    const auto Transfer = [&] {
        const CInside Inside(*this);
        return Inside && Owns(hPort) && !IsClosing() && WriteFile(hPort, pData, dwLength, pdwWritten, nullptr);
    };
    if (Transfer())
        return true;
    *pdwError = CleanUp(hPort);
    Log.Error("MP::Write - WriteFile failed. Last error is 0x%X", *pdwError);
    return false;
}

bool MP::Read(HANDLE hPort, void* pBuffer, DWORD dwSize, DWORD* pdwRead, DWORD* pdwError, DWORD)
{
    const auto Transfer = [&] {
        const CInside Inside(*this);
        return Inside && Owns(hPort) && !IsClosing() && ReadFile(hPort, pBuffer, dwSize, pdwRead, nullptr);
    };
    if (Transfer()) {
        std::memset(static_cast<uint8_t*>(pBuffer) + *pdwRead, 0, dwSize - *pdwRead);
        return true;
    }
    *pdwError = CleanUp(hPort);
    Log.Error("MP::Read - ReadFile failed. Last error is 0x%X", *pdwError);
    return false;
}

// Is the port being closed? Then the last error is that of a cancelled operation.
bool MP::IsClosing() const
{
    const bool bClosing = m_hClosing && WaitForSingleObject(m_hClosing, 0) == WAIT_OBJECT_0;
    if (bClosing)
        SetLastError(ERROR_OPERATION_ABORTED);
    return bClosing;
}

// Clears the port's error state after a failure, whose code it returns.
DWORD MP::CleanUp(HANDLE hPort) const
{
    const DWORD dwError = GetLastError();
    DWORD dwErrors = 0;
    if (dwError != ERROR_INVALID_HANDLE)
        ClearCommError(hPort, &dwErrors, nullptr);
    return dwError;
}

MP::CInside::CInside(MP& Port) : m_Port(Port)
{
    CHandle Thread = OpenOwnThread();
    m_bKnown = static_cast<bool>(Thread);
    CLock Lock(m_Port.m_csThread);
    m_Port.m_hThread = std::move(Thread);
}

MP::CInside::~CInside()
{
    CLock Lock(m_Port.m_csThread);
    m_Port.m_hThread.Reset();
}

void MP::CancelPending()
{
    CLock Lock(m_csThread);
    if (m_hThread)
        CancelSynchronousIo(m_hThread.Get());
}
