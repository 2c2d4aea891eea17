#include "link/open_port.h"

#include <utility>

namespace {

// How often a blocking operation is cancelled again until its thread has left; it may not have begun the first time.
constexpr DWORD kCancelPause = 10;

} // namespace

COpenPort::COpenPort(CHandle hPort, std::unique_ptr<CPort> pPort)
    : m_evClosing(MakeEvent()),
      m_evLeft(MakeEvent()),
      m_pPort(std::move(pPort)),
      m_hPort(hPort.Get()),
      m_hOwned(std::move(hPort))
{
    m_pPort->Attach(m_hPort, m_evClosing.Get());
}

COpenPort::~COpenPort()
{
    Close();
}

bool COpenPort::Write(HANDLE hPort, const void* pData, DWORD dwLength, DWORD* pdwWritten, DWORD* pdwError)
{
    const CUse Use(*this);
    return m_pPort->Write(Use.Admit(hPort), pData, dwLength, pdwWritten, pdwError);
}

bool COpenPort::Read(HANDLE hPort, void* pBuffer, DWORD dwSize, DWORD* pdwRead, DWORD* pdwError, DWORD dwTimeout)
{
    const CUse Use(*this);
    return m_pPort->Read(Use.Admit(hPort), pBuffer, dwSize, pdwRead, pdwError, dwTimeout);
}

COpenPort::CUse::CUse(COpenPort& Port) : m_Port(Port)
{
    CLock Lock(m_Port.m_csUse);
    m_bOpen = !m_Port.m_bClosed;
    m_Port.m_dwUsers += m_bOpen;
}

COpenPort::CUse::~CUse()
{
    CLock Lock(m_Port.m_csUse);
    if (m_bOpen && --m_Port.m_dwUsers == 0 && m_Port.m_bClosed)
        SetEvent(m_Port.m_evLeft.Get());
}

bool COpenPort::IsClosed() const
{
    CLock Lock(m_csUse);
    return m_bClosed;
}

bool COpenPort::IsIdle() const
{
    CLock Lock(m_csUse);
    return m_dwUsers == 0;
}

void COpenPort::Close()
{
    {
        CLock Lock(m_csUse);
        if (std::exchange(m_bClosed, true))
            return;
    }
    SetEvent(m_evClosing.Get());
    while (!IsIdle()) {
        if (WaitForSingleObject(m_evLeft.Get(), kCancelPause) == WAIT_FAILED)
            Sleep(kCancelPause);
        m_pPort->CancelPending();
    }
    m_hOwned.Reset();
}
