// The one object that an open port is: its handle, its port object and the event that says it is closing. It is shared:
// an exchange keeps a reference and registers its use for as long as it is inside the port, so that Close can end the
// exchange in progress, wait until it has left, and only then close the handle. An immediate re-open of the same path
// therefore succeeds.
#pragma once

#include <memory>

#include <windows.h>

#include "common/handle.h"
#include "common/lock.h"
#include "link/port.h"

class COpenPort
{
public:
    // Throws std::bad_alloc when the system has no events left.
    COpenPort(CHandle hPort, std::unique_ptr<CPort> pPort);
    ~COpenPort();
    COpenPort(const COpenPort&) = delete;
    COpenPort& operator=(const COpenPort&) = delete;

    // Stays the same when the port has been closed; it is then a handle like any other that is not open.
    HANDLE GetHandle() const { return m_hPort; }
    bool IsClosed() const;
    const std::string& GetPath() const { return m_pPort->GetPath(); }

    // CPort's operations, with the use registered. After Close they fail as on a closed handle.
    bool Write(HANDLE hPort, const void* pData, DWORD dwLength, DWORD* pdwWritten, DWORD* pdwError);
    bool Read(HANDLE hPort, void* pBuffer, DWORD dwSize, DWORD* pdwRead, DWORD* pdwError, DWORD dwTimeout);

    // Ends the exchange in progress, waits until it has left the port, closes the handle. Once; later calls do nothing.
    void Close();

private:
    bool IsIdle() const;

    // One thread's stay inside the port object. A port that has been closed admits no handle any more.
    class CUse
    {
    public:
        explicit CUse(COpenPort& Port);
        ~CUse();
        CUse(const CUse&) = delete;
        CUse& operator=(const CUse&) = delete;
        HANDLE Admit(HANDLE hPort) const { return m_bOpen ? hPort : INVALID_HANDLE_VALUE; }

    private:
        COpenPort& m_Port;
        bool m_bOpen;
    };

    mutable COwnedCriticalSection m_csUse;
    DWORD m_dwUsers PHN_GUARDED_BY(m_csUse) = 0;
    bool m_bClosed PHN_GUARDED_BY(m_csUse) = false;
    CHandle m_evClosing; // set by Close
    CHandle m_evLeft;    // set when the last one has left a closed port
    std::unique_ptr<CPort> m_pPort;
    const HANDLE m_hPort;
    CHandle m_hOwned; // the same, until it is closed
};
