#include "link/modem_port.h"

#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_CPORT};

} // namespace

// Registers the calling thread as the one inside, for CancelPending. False for a handle that is not this port's.
bool MP::Enter(HANDLE hPort)
{
    if (hPort != m_hPort) {
        SetLastError(ERROR_INVALID_HANDLE);
        return false;
    }
    HANDLE hThread = nullptr;
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &hThread, 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
    CLock Lock(m_csThread);
    m_hThread.Reset(hThread);
    return true;
}

void MP::Leave()
{
    const DWORD dwError = GetLastError();
    {
        CLock Lock(m_csThread);
        m_hThread.Reset();
    }
    SetLastError(dwError);
}

// Takes the system's error code and clears the port's error state.
void MP::TakeError(HANDLE hPort, DWORD* pdwError)
{
    *pdwError = GetLastError();
    if (hPort == m_hPort)
        ClearCommError(hPort, nullptr, nullptr);
}

bool MP::Write(HANDLE hPort, const void* pData, DWORD dwLength, DWORD* pdwWritten, DWORD* pdwError)
{
    *pdwError = 0;
    bool bDone = false;
    if (Enter(hPort)) {
        bDone = WriteFile(hPort, pData, dwLength, pdwWritten, nullptr);
        Leave();
    }
    if (!bDone) {
        TakeError(hPort, pdwError);
        Log.Error("MP::Write - WriteFile failed. Last error is 0x%X", *pdwError);
    }
    return bDone;
}

bool MP::Read(HANDLE hPort, void* pBuffer, DWORD dwSize, DWORD* pdwRead, DWORD* pdwError, DWORD)
{
    *pdwError = 0;
    bool bDone = false;
    if (Enter(hPort)) {
        bDone = ReadFile(hPort, pBuffer, dwSize, pdwRead, nullptr);
        Leave();
    }
    if (!bDone) {
        TakeError(hPort, pdwError);
        Log.Error("MP::Read - ReadFile failed. Last error is 0x%X", *pdwError);
    }
    return bDone;
}

void MP::CancelPending()
{
    CLock Lock(m_csThread);
    if (m_hThread)
        CancelSynchronousIo(m_hThread.Get());
}
