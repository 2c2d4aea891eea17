// One overlapped operation of a diagnostic port: its event and its record. Before either goes, the operation is over:
// whoever gives up a pending one calls Abandon first. One that failed to begin is over, and must not be waited for: its
// record may say that it is pending for ever.
#pragma once

#include <windows.h>

#include "common/handle.h"

enum class EWait
{
    eCompleted,
    eTimeOut,
    eEnded, // or failed; the last error says how
};

class COverlappedOperation
{
public:
    COverlappedOperation();
    COverlappedOperation(const COverlappedOperation&) = delete;
    COverlappedOperation& operator=(const COverlappedOperation&) = delete;

    // Has the event been created?
    explicit operator bool() const { return static_cast<bool>(m_evDone); }

    OVERLAPPED* GetRecord() { return &m_Record; }

    // Waits for completion. Ends also when the port is being closed or the library unloaded; then the last error is
    // ERROR_OPERATION_ABORTED.
    EWait Await(HANDLE hClosing, DWORD dwTimeout) const;

    // Gives up a pending operation, which is no failure: how many bytes it has moved.
    DWORD Withdraw(HANDLE hPort);

    // After a failed step, whose last error it returns: clears and purges the port.
    static DWORD CleanUp(HANDLE hPort);

    // The same for a pending operation, and waits until it is over.
    DWORD Abandon(HANDLE hPort);

private:
    CHandle m_evDone;
    OVERLAPPED m_Record{};
};
