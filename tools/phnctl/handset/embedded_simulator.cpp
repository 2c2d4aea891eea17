#include "phnctl/handset/embedded.h"

#include "phnctl/cli/ending.h"
#include "phnctl/text/failure.h"
#include "simulator/lines/device_directory.h"
#include "simulator/lines/simulator.h"

#include <cstdlib>

namespace phnctl {

namespace {

class Simulated : public EmbeddedHandset
{
public:
    Simulated() : m_simulator(m_devices.Path(), simulator::UsbInterfaceName("0001"))
    {
        RemoveAtEnd(m_devices.Path());
        m_simulator.Start();
        setenv("PHNNRV_DEVICES", m_devices.Path().c_str(), 1);
    }
    ~Simulated() override
    {
        m_simulator.Stop();
        Forget(m_devices.Path());
    }

private:
    simulator::DeviceDirectory m_devices;
    simulator::Simulator m_simulator;
};

} // namespace

bool HasEmbeddedHandset()
{
    return true;
}

std::unique_ptr<EmbeddedHandset> StartEmbeddedHandset()
{
    try {
        return std::make_unique<Simulated>();
    } catch (const std::exception& error) {
        throw Failure(kRefused, std::string("the simulated handset does not start: ") + error.what());
    }
}

} // namespace phnctl
