// What the watch thread does in a cycle: a handset on a plain serial port is searched for in the registry's serial-port
// map, by two threads side by side, and one that was found is asked every seventh cycle whether it is still there.
#include <exception>

#include "common/ascii_case.h"
#include "link/device.h"
#include "link/machine_key.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_CDEVICE};

constexpr LONG kCyclesBetweenChecks = 6;
constexpr char kSerialMap[] = "HARDWARE\\DEVICEMAP\\SERIALCOMM";
constexpr char kNamePrefix[] = "\\\\?\\";

class CFlag
{
public:
    explicit CFlag(std::atomic<bool>& bFlag) : m_bFlag(bFlag) { m_bFlag = true; }
    ~CFlag() { m_bFlag = false; }
    CFlag(const CFlag&) = delete;
    CFlag& operator=(const CFlag&) = delete;

private:
    std::atomic<bool>& m_bFlag;
};

// What runs on the watch's threads may run out of memory; the threads go on.
template <typename Work>
void RunGuarded(Work&& DoWork)
{
    try {
        DoWork();
    } catch (const std::exception&) {
        Log.Error("BT_Thread - Out of memory");
    }
}

} // namespace

void CDevice::RunWatchCycle()
{
    RunGuarded([this] { WatchCycle(); });
}

void CDevice::WatchCycle()
{
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
        // The window's thread may have closed the port meanwhile, and opened another.
        if (GetPort() != pPort)
            return;
        Log.Comment("BT_Thread - phone disconnected\n");
        LoseHandset();
    }
    Log.Comment("BT_Thread - calling ScanPorts\n");
    Scan();
}

void CDevice::Scan()
{
    CFlag Scanning(m_bScanning);
    ScanPorts();
}

bool CDevice::ScanPorts()
{
    const CMachineKey Map(kSerialMap);
    if (!Map.IsOpen())
        return false;
    std::vector<std::string> Odd;
    std::vector<std::string> Even;
    size_t uCount = 0;
    std::string strName;
    for (DWORD dwIndex = 0; PumpMessage(), Map.GetValueName(dwIndex, &strName); ++dwIndex) {
        Log.Comment("CDevice::ScanPorts - enumerating key, %s", strName.c_str());
        std::string strPort;
        if (strName.empty() || !Map.ReadString(strName, &strPort))
            continue;
        std::vector<std::string>& List = ++uCount % 2 ? Odd : Even;
        List.push_back((m_bDevicePrefix ? kNamePrefix : "") + LowerCase(strPort));
    }
    m_Watch.ScanOnWorker(std::move(Even));
    ScanPortList(Odd);
    m_Watch.AwaitWorker();
    return false;
}

bool CDevice::ScanPortList(const std::vector<std::string>& Ports)
{
    bool bFound = false;
    RunGuarded([&] { bFound = TryPorts(Ports); });
    return bFound;
}

bool CDevice::TryPorts(const std::vector<std::string>& Ports)
{
    for (const std::string& strPort : Ports) {
        PumpMessage();
        if (WaitForSingleObject(g_evStop, 1) == WAIT_OBJECT_0) {
            Log.Comment("CDevice::ScanPorts will exit as main thread wants to exit");
            return false;
        }
        if (GetMDMHandle())
            return true;
        if (IsUSBPort(strPort)) {
            Log.Error("CDevice::ScanPorts - the port to be opened is an USB");
            return false;
        }
        if (TryPort(strPort))
            return true;
    }
    return false;
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
