// phnctl beside others that want the same port.
#include "phnctl/program.h"
#include "simulator/lines/simulator.h"

#include <array>
#include <gtest/gtest.h>

namespace {

class Turn : public testing::Test
{
protected:
    Turn() : m_simulator(m_devices.Path(), "com5") { m_simulator.Start(); }

    pid_t Start(Program& program, const char* words) const
    {
        program.Set("PHNNRV_DEVICES", m_devices.Path().string());
        program.Set("PHNNRV_TIME_SCALE", "1");
        return program.Start(words);
    }

    simulator::DeviceDirectory m_devices;
    simulator::Simulator m_simulator;
};

// The library alone looks at a port that was taken again after 15 seconds only.
TEST_F(Turn, ComesToEachOfSeveralAtOnce)
{
    std::array<Program, 3> programs;
    std::array<pid_t, 3> processes{};
    for (std::size_t i = 0; i < programs.size(); ++i)
        processes[i] = Start(programs[i], "info --wait 12");
    for (std::size_t i = 0; i < programs.size(); ++i)
        EXPECT_EQ(programs[i].Finish(processes[i]).status, 0);
}

} // namespace
