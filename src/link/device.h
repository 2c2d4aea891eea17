// The device object: finds the serial port of an attached handset, opens it, keeps the one open port and watches it. A
// USB handset is found by interface enumeration and by the arrival messages of the hidden window this object also is; a
// handset on a plain serial port is found by the port watch. Its operations stand by topic in device.cpp (the port it
// holds), interface_list.cpp (enumeration), device_ports.cpp (opening), port_scan.cpp (search and watch) and
// device_messages.cpp (the window's messages).
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include <windows.h>

#include "common/lock.h"
#include "common/shared_slot.h"
#include "link/device_owner.h"
#include "link/device_window.h"
#include "link/open_port.h"
#include "link/port_watch.h"

// Guards the port handle, and every opening and closing of a port as a whole.
extern CCriticalSection g_csDevice;

extern const GUID kDiagnosticInterface; // of the handset's maker; such a port is opened as a diagnostic port
extern const GUID kModemInterface;      // the standard modem class

class CDevice final : public CDeviceWindow
{
public:
    CDevice();
    ~CDevice() override;

    // The open port, in one slot: its handle and its port object are two halves of one object. The handle is null when
    // no handset is connected.
    HANDLE GetMDMHandle() const;
    std::shared_ptr<COpenPort> GetPort() const { return m_pPort.Get(); }
    // Makes it the open port; false if there is one already.
    bool SetMDMHandle(const std::shared_ptr<COpenPort>& pPort);
    void CloseMDMHandle();
    // As SetMDMHandle, but a port that comes too late is closed.
    bool AdoptPort(const std::shared_ptr<COpenPort>& pPort);
    void ClosePort();
    // Releases the service objects, then the port.
    void Disconnect() PHN_REQUIRES(g_csCallbackPoll, g_csCallbackRemoved);

    // Looks for a present interface of the maker and opens its port.
    bool ScanforDevices(const GUID& Class);
    // The lower-cased path of the maker's first present interface of the class, or of the one that pszPort belongs to.
    bool TraverseDevice(const GUID& Class, std::string* pstrPath, const char* pszPort) const;
    bool IsUSBPort(const std::string& strPort) const;

    // The first form only opens; null on failure. The second adopts what it opened.
    std::shared_ptr<COpenPort> OpenDiagPortOnly(const std::string& strPath) const;
    bool OpenDiagPort(const std::string& strPath);
    // Opens, adopts and runs the AT dialogue; the port is released whole if that fails.
    bool OpenModemPort(const std::string& strPath);

    // Does a handset answer? The second form asks the open port.
    bool CheckPort(HANDLE hPort, COpenPort* pPort) const;
    bool CheckPort() const;

    bool RegisterNotification();
    void UnregisterNotification();

    // Arms the timer that starts the watch threads; ends them, for good.
    void InitPortScanning();
    void UninitPortScanning();

    // One cycle of the watch thread, and what it does: on that thread, and the list also on the scan worker. Neither
    // the cycle nor the list throws.
    void RunWatchCycle();
    bool ScanPorts();
    bool ScanPortList(const std::vector<std::string>& Ports);
    CPortWatch& GetWatch() { return m_Watch; }

private:
    BOOL OnDeviceChange(UINT uEvent, const void* pData) override;
    void OnTimer(UINT_PTR nTimer) override;
    void OnPollMessage(LPARAM lStart) override;
    BOOL OnBroadCasting(UINT uEvent) override;

    BOOL OnArrival(const GUID& Class, const std::string& strName);
    void OnRemoval(const std::string& strName);
    BOOL OpenArrival(const GUID& Class, const std::string& strName);
    void WatchCycle();
    bool TryPorts(const std::vector<std::string>& Ports);
    bool TryPort(const std::string& strPort);
    void CheckOpenPort(const std::shared_ptr<COpenPort>& pPort);
    void Scan();

    bool SetupComPort(HANDLE hPort, bool bModem) const;
    bool StartModem(HANDLE hPort) const;
    void NotifyDeviceState(bool bConnected) const;
    void LoseHandset() PHN_REQUIRES(g_csCallbackPoll, g_csCallbackRemoved);

    CSharedSlot<COpenPort> m_pPort;
    HDEVNOTIFY m_hDevNotify = nullptr;
    std::atomic<bool> m_bScanning{false};
    UINT_PTR m_nPollTimer = 0;
    UINT_PTR m_nStartTimer = 0;
    bool m_bDevicePrefix;
    LONG m_nCheckCount = 0;
    std::atomic<bool> m_bWatchPorts{true};
    CPortWatch m_Watch{*this};
};
