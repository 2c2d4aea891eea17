// The search for a handset on a plain serial port: the ports of the registry's serial-port map in two halves, of which
// one is walked by the calling thread and the other by the watch's worker, side by side.
#pragma once

#include <string>
#include <vector>

#include "link/port_watch.h"

// What a scan needs of the device object.
class CScanTarget
{
public:
    virtual bool HasOpenPort() const = 0;
    virtual bool IsUSBPort(const std::string& strPort) const = 0;
    // Opens the port, asks whether a handset answers, and makes it the open port if one does.
    virtual bool TryPort(const std::string& strPort) = 0;
    // Dispatches a pending message of the device's window, where the calling thread has one.
    virtual void PumpMessage() const = 0;

protected:
    ~CScanTarget() = default;
};

class CPortScan
{
public:
    // With a prefix, ports are opened as "\\?\com5".
    CPortScan(CScanTarget& Target, CPortWatch& Watch, bool bDevicePrefix)
        : m_Target(Target), m_Watch(Watch), m_bDevicePrefix(bDevicePrefix)
    {
    }

    // A whole scan, on the watch thread. Whether it found a handset shows in the target.
    void Run();

    // One half: true when there is an open port, found here or elsewhere. Ends early when the library is being
    // unloaded.
    bool TryPorts(const std::vector<std::string>& Ports);

private:
    CScanTarget& m_Target;
    CPortWatch& m_Watch;
    const bool m_bDevicePrefix;
};
