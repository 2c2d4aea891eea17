#include "link/overlapped.h"

#include "link/sync.h"

COverlappedOperation::COverlappedOperation() : m_evDone(CreateEventA(nullptr, TRUE, FALSE, nullptr))
{
    m_Record.hEvent = m_evDone.Get();
}

EWait COverlappedOperation::Await(HANDLE hClosing, DWORD dwTimeout) const
{
    HANDLE ahWait[3] = {m_evDone.Get()};
    DWORD dwCount = 1;
    for (const HANDLE hEnd : {hClosing, g_evStop}) {
        if (hEnd)
            ahWait[dwCount++] = hEnd;
    }
    const DWORD dwResult = WaitForMultipleObjects(dwCount, ahWait, FALSE, dwTimeout);
    if (dwResult > WAIT_OBJECT_0 && dwResult < WAIT_OBJECT_0 + dwCount)
        SetLastError(ERROR_OPERATION_ABORTED);
    if (dwResult == WAIT_OBJECT_0)
        return EWait::eCompleted;
    return dwResult == WAIT_TIMEOUT ? EWait::eTimeOut : EWait::eEnded;
}

DWORD COverlappedOperation::Withdraw(HANDLE hPort)
{
    DWORD dwBytes = 0;
    if (!CancelIoEx(hPort, &m_Record) && GetLastError() != ERROR_NOT_FOUND)
        PurgeComm(hPort, PURGE_TXABORT | PURGE_RXABORT); // or the next call waits for ever
    GetOverlappedResult(hPort, &m_Record, &dwBytes, TRUE);
    return dwBytes;
}

DWORD COverlappedOperation::CleanUp(HANDLE hPort)
{
    const DWORD dwError = GetLastError();
    if (dwError == ERROR_INVALID_HANDLE)
        return dwError; // no port to clean
    DWORD dwErrors = 0;
    ClearCommError(hPort, &dwErrors, nullptr);
    PurgeComm(hPort, PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR);
    return dwError;
}

DWORD COverlappedOperation::Abandon(HANDLE hPort)
{
    const DWORD dwError = CleanUp(hPort);
    Withdraw(hPort); // a purge alone may leave the operation pending
    return dwError;
}
