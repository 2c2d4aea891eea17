// The device object: finds the serial port of an attached handset, opens it, keeps the one open port and watches it. A
// USB handset is found by interface enumeration and by the arrival messages of the hidden window this object also is; a
// handset on a plain serial port is found by the port watch. Its operations stand by topic in device.cpp (the port it
// holds and finds), device_ports.cpp (opening), device_watch.cpp (the watch's cycle) and device_messages.cpp (the
// window's messages).
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
#include "link/port_scan.h"
#include "link/port_watch.h"

// Guards the port handle, and every opening and closing of a port as a whole.
extern CCriticalSection g_csDevice;

class CDevice final : public CDeviceWindow, private CWatchWork, private CScanTarget
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
    // As FindMakersInterface; true at once, without a path, when a port is open.
    bool TraverseDevice(const GUID& Class, std::string* pstrPath, const char* pszPort) const;
    bool IsUSBPort(const std::string& strPort) const override;

    // The first form only opens; null on failure. The second adopts what it opened.
    std::shared_ptr<COpenPort> OpenDiagPortOnly(const std::string& strPath) const;
    bool OpenDiagPort(const std::string& strPath);
    // Opens, adopts and runs the AT dialogue; the port is released whole if that fails.
    bool OpenModemPort(const std::string& strPath);

    // Does a handset answer? The second form asks the open port.
    bool CheckPort(HANDLE hPort, COpenPort* pPort) const;
    bool CheckPort() const;

    void PumpMessage() const override { CDeviceWindow::PumpMessage(); }

    bool RegisterNotification();
    void UnregisterNotification();

    // Arms the timer that starts the watch threads; ends them, for good.
    void InitPortScanning();
    void UninitPortScanning();

    // One cycle of the watch thread, and what it does: on that thread, and the list also on the scan worker.
    void RunWatchCycle() override;
    bool ScanPorts();
    bool ScanPortList(const std::vector<std::string>& Ports) override;

private:
    BOOL OnDeviceChange(UINT uEvent, const void* pData) override;
    void OnTimer(UINT_PTR nTimer) override;
    void OnPollMessage(LPARAM lStart) override;
    BOOL OnBroadCasting(UINT uEvent) override;

    BOOL OnArrival(const GUID& Class, const std::string& strName);
    void OnRemoval(const std::string& strName);
    void OnSuspend();
    void StartWatch();
    UINT_PTR StartTimer(UINT_PTR nTimer, UINT uPeriod) const;
    BOOL OpenArrival(const GUID& Class, const std::string& strName);
    bool HasOpenPort() const override { return GetMDMHandle() != nullptr; }
    bool TryPort(const std::string& strPort) override;
    void CheckOpenPort(const std::shared_ptr<COpenPort>& pPort);
    void Scan();

    bool SetupComPort(HANDLE hPort, COMMTIMEOUTS Timeouts) const;
    bool StartModem(HANDLE hPort) const;
    void NotifyDeviceState(bool bConnected) const;
    void LoseHandset() PHN_REQUIRES(g_csCallbackPoll, g_csCallbackRemoved);
    bool IsBeingLost() const PHN_REQUIRES(g_csCallbackPoll, g_csCallbackRemoved);

    CSharedSlot<COpenPort> m_pPort;
    // Set while its loss is being told: the host's function may dispatch messages, and an arrival among them.
    std::shared_ptr<COpenPort> m_pLostPort PHN_GUARDED_BY(g_csCallbackRemoved);
    HDEVNOTIFY m_hDevNotify = nullptr;
    std::atomic<bool> m_bScanning{false};
    bool m_bPolling = false; // a polled function may dispatch messages too
    UINT_PTR m_nPollTimer = 0;
    UINT_PTR m_nStartTimer = 0;
    LONG m_nCheckCount = 0;
    std::atomic<bool> m_bWatchPorts{true};
    CPortWatch m_Watch{*this};
    CPortScan m_Scan;
};
