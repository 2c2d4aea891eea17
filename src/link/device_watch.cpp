// What the device object does in a cycle of the watch: a handset on a plain serial port is searched for while there is
// none, and one that was found is asked every seventh cycle whether it is still there.
#include "common/scoped_value.h"
#include "link/device.h"
#include "link/interface_list.h"
#include "log/host_check.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_CDEVICE};

constexpr LONG kCyclesBetweenChecks = 6;

} // namespace

void CDevice::RunWatchCycle()
{
    CHostCheck::LookAtLoadingThread();
    if (!m_bWatchPorts)
        return;
    Log.Comment("BT_Thread - Port timer started\n");
    if (const auto pPort = GetPort(); pPort && GetMDMHandle()) {
        Log.Comment("BT_Thread - Handle is not null\n");
        if (++m_nCheckCount > kCyclesBetweenChecks) {
            m_nCheckCount = 0;
            CheckOpenPort(pPort);
        }
    }
    if (!GetMDMHandle() && !m_bScanning) {
        Log.Comment("BT_Thread - Handle is null, so begin to scan\n");
        Scan();
    }
}

void CDevice::CheckOpenPort(const std::shared_ptr<COpenPort>& pPort)
{
    Log.Comment("BT_Thread - calling CheckPort\n");
    if (m_bScanning || CheckPort()) {
        Log.Comment("BT_Thread - phone still connected\n");
        return;
    }
    {
        CCallbackLocks CallbackLocks;
        // The window's thread may have closed the port meanwhile, and opened another; a USB handset's is not watched.
        if (GetPort() != pPort || !m_bWatchPorts)
            return;
        Log.Comment("BT_Thread - phone disconnected\n");
        LoseHandset();
    }
    Log.Comment("BT_Thread - calling ScanPorts\n");
    Scan();
}

void CDevice::Scan()
{
    CScopedValue Scanning(m_bScanning, true);
    ScanPorts();
    // Nothing announces an interface that was there before the open one went, or that another program held.
    if (WaitForSingleObject(g_evStop, 0) != WAIT_OBJECT_0)
        ScanforDevices(kDiagnosticInterface);
}

bool CDevice::ScanPorts()
{
    m_Scan.Run();
    return false;
}

bool CDevice::ScanPortList(const std::vector<std::string>& Ports)
{
    return m_Scan.TryPorts(Ports);
}

bool CDevice::TryPort(const std::string& strPort)
{
    const auto pPort = OpenDiagPortOnly(strPort);
    if (!pPort) {
        Log.Error("CDevice::ScanPorts - OpenDiagPort %s Failed", strPort.c_str());
        return false;
    }
    Log.Comment("CDevice::ScanPorts - OpenDiagPort %s Succeeded", strPort.c_str());
    if (!CheckPort(pPort->GetHandle(), pPort.get())) {
        Log.Comment("CDevice::ScanPorts - closing %s", strPort.c_str());
        pPort->Close();
        return false;
    }
    Log.Comment("CDevice::ScanPorts - returned true %s", strPort.c_str());
    NotifyDeviceState(true);
    AdoptPort(pPort);
    return true;
}
