#include "link/port_scan.h"

#include "common/ascii_case.h"
#include "link/machine_key.h"
#include "link/watch_guard.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_CDEVICE};

constexpr char kSerialMap[] = "HARDWARE\\DEVICEMAP\\SERIALCOMM";
constexpr char kNamePrefix[] = "\\\\?\\";

} // namespace

void CPortScan::Run()
{
    const CMachineKey Map(kSerialMap);
    if (!Map.IsOpen())
        return;
    std::vector<std::string> Odd;
    std::vector<std::string> Even;
    size_t uCount = 0;
    std::string strName;
    for (DWORD dwIndex = 0; m_Target.PumpMessage(), Map.GetValueName(dwIndex, &strName); ++dwIndex) {
        Log.Comment("CDevice::ScanPorts - enumerating key, %s", strName.c_str());
        std::string strPort;
        if (strName.empty() || !Map.ReadString(strName, &strPort))
            continue;
        std::vector<std::string>& List = ++uCount % 2 ? Odd : Even;
        List.push_back((m_bDevicePrefix ? kNamePrefix : "") + LowerCase(strPort));
    }
    m_Watch.ScanOnWorker(std::move(Even));
    RunGuarded([&] { TryPorts(Odd); }); // the worker has to be awaited whatever happens here
    m_Watch.AwaitWorker();
}

bool CPortScan::TryPorts(const std::vector<std::string>& Ports)
{
    for (const std::string& strPort : Ports) {
        m_Target.PumpMessage();
        if (WaitForSingleObject(g_evStop, 1) == WAIT_OBJECT_0) {
            Log.Comment("CDevice::ScanPorts will exit as main thread wants to exit");
            return false;
        }
        if (m_Target.HasOpenPort())
            return true;
        if (m_Target.IsUSBPort(strPort)) {
            Log.Error("CDevice::ScanPorts - the port to be opened is an USB");
            return false;
        }
        if (m_Target.TryPort(strPort))
            return true;
    }
    return false;
}
