// A simulated handset that outlives the single runs of phnctl. Base of the tests that look at both sides.
#pragma once

#include "phnctl/program.h"
#include "simulator/simulator.h"

#include <gtest/gtest.h>
#include <string>

namespace phnctl_test {

class HandsetRun : public testing::Test
{
protected:
    HandsetRun() : m_simulator(m_devices.Path(), simulator::UsbInterfaceName("0001"))
    {
        // Little room, as many runs ask for all indexes.
        Handset().Change(0, [](simulator::Phone& phone) { phone.limits.contacts = phone.limits.events = 64; });
        m_simulator.Start();
        m_program.Set("PHNNRV_DEVICES", m_devices.Path().string());
    }

    simulator::Handset& Handset() { return m_simulator.Control(); }
    Outcome Run(const std::string& words, const std::string& input = "") { return m_program.Run(Split(words), input); }

    simulator::DeviceDirectory m_devices;
    simulator::Simulator m_simulator;
    Program m_program;
};

} // namespace phnctl_test
