// One exchange's bytes over an opened serial port. CPort is the seam between command execution and the wire: DP
// (diagnostic_port.h) frames requests and uses overlapped I/O, MP (modem_port.h) passes bytes through with blocking
// I/O, and tests put a port in memory here. Ports are used under the command lock only, one exchange at a time.
#pragma once

#include <string>
#include <utility>

#include <windows.h>

class CPort
{
public:
    explicit CPort(std::string strPath) : m_strPath(std::move(strPath)) {}
    virtual ~CPort() = default;
    CPort(const CPort&) = delete;
    CPort& operator=(const CPort&) = delete;

    // Both return false with the system's error code in *pdwError, 0 where the failure is not a system call's. A handle
    // other than the one the port was opened with fails like a closed one (ERROR_INVALID_HANDLE).
    virtual bool Write(HANDLE hPort, const void* pData, DWORD dwLength, DWORD* pdwWritten, DWORD* pdwError) = 0;
    // A buffer that was read into is zero behind what was read.
    virtual bool Read(HANDLE hPort, void* pBuffer, DWORD dwSize, DWORD* pdwRead, DWORD* pdwError, DWORD dwTimeout) = 0;

    // Ends a blocking operation that another thread has pending, for a port that is being closed. Called again until
    // that thread has left; a port whose waits end by m_hClosing needs nothing.
    virtual void CancelPending() {}

    // The path with which the port was opened, compared with the names of removed devices.
    const std::string& GetPath() const { return m_strPath; }

    // Called once by COpenPort: the port's handle, and the event that ends every wait when the port is being closed.
    void Attach(HANDLE hPort, HANDLE hClosing)
    {
        m_hPort = hPort;
        m_hClosing = hClosing;
    }

protected:
    // Is this the handle that the port was opened with? If not, the last error is ERROR_INVALID_HANDLE.
    bool Owns(HANDLE hPort) const
    {
        if (hPort && hPort == m_hPort)
            return true;
        SetLastError(ERROR_INVALID_HANDLE);
        return false;
    }

    HANDLE m_hPort = nullptr;
    HANDLE m_hClosing = nullptr;

private:
    std::string m_strPath;
};
