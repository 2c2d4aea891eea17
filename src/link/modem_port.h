// The handset's modem port: passes bytes through with blocking I/O. A read lasts until the port's time-outs end it,
// however long they multiply to; closing the port cancels it on the thread that is inside.
#pragma once

#include "common/handle.h"
#include "common/lock.h"
#include "link/port.h"

class MP final : public CPort
{
public:
    using CPort::CPort;

    bool Write(HANDLE hPort, const void* pData, DWORD dwLength, DWORD* pdwWritten, DWORD* pdwError) override;

    // A reply may be empty; the time-out is not used.
    bool Read(HANDLE hPort, void* pBuffer, DWORD dwSize, DWORD* pdwRead, DWORD* pdwError, DWORD dwTimeout) override;

    void CancelPending() override;

private:
    // For as long as a thread is inside a call on the port, it can be cancelled there; not in the log's file.
    class CInside
    {
    public:
        explicit CInside(MP& Port);
        ~CInside();
        CInside(const CInside&) = delete;
        CInside& operator=(const CInside&) = delete;
        // Can it be cancelled? If not, the last error says why.
        explicit operator bool() const { return m_bKnown; }

    private:
        MP& m_Port;
        bool m_bKnown;
    };

    bool IsClosing() const;
    DWORD CleanUp(HANDLE hPort) const;

    COwnedCriticalSection m_csThread;
    CHandle m_hThread PHN_GUARDED_BY(m_csThread); // the thread inside; empty when there is none
};
