#include "link/open_port.h"

#include <utility>

namespace {

constexpr DWORD kCancelAgain = 20; // milliseconds

} // namespace

COpenPort::COpenPort(HANDLE hPort, std::unique_ptr<CPort> pPort) : m_pPort(std::move(pPort)), m_hPort(hPort)
{
    m_evClosing = MakeEvent();
    m_evIdle = MakeEvent();
    m_pPort->Attach(hPort, m_evClosing.Get());
}

COpenPort::~COpenPort()
{
    Close();
}

bool COpenPort::Write(HANDLE hPort, const void* pData, DWORD dwLength, DWORD* pdwWritten, DWORD* pdwError)
{
    if (!Enter())
        return m_pPort->Write(nullptr, pData, dwLength, pdwWritten, pdwError);
    const CUse Use(*this);
    return m_pPort->Write(hPort, pData, dwLength, pdwWritten, pdwError);
}

bool COpenPort::Read(HANDLE hPort, void* pBuffer, DWORD dwSize, DWORD* pdwRead, DWORD* pdwError, DWORD dwTimeout)
{
    if (!Enter())
        return m_pPort->Read(nullptr, pBuffer, dwSize, pdwRead, pdwError, dwTimeout);
    const CUse Use(*this);
    return m_pPort->Read(hPort, pBuffer, dwSize, pdwRead, pdwError, dwTimeout);
}

void COpenPort::Close()
{
    bool bIdle = false;
    {
        CLock Lock(m_csUse);
        if (std::exchange(m_bClosed, true))
            return;
        bIdle = m_dwUsers == 0;
    }
    SetEvent(m_evClosing.Get());
    // The thread inside may be about to start a blocking operation: one cancel is not enough.
    for (DWORD dwWait = 0; !bIdle; dwWait = kCancelAgain) {
        bIdle = WaitForSingleObject(m_evIdle.Get(), dwWait) == WAIT_OBJECT_0;
        if (!bIdle)
            m_pPort->CancelPending();
    }
    m_hPort.Reset();
}

bool COpenPort::Enter()
{
    CLock Lock(m_csUse);
    if (m_bClosed)
        return false;
    ++m_dwUsers;
    return true;
}

void COpenPort::Leave()
{
    CLock Lock(m_csUse);
    if (--m_dwUsers == 0 && m_bClosed)
        SetEvent(m_evIdle.Get());
}
