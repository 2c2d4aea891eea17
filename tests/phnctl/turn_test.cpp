// phnctl beside others that want the same port.
#include "phnctl/program.h"
#include "simulator/lines/simulator.h"

#include <array>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

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

TEST_F(Turn, OthersThatHoldThePortAreNamed)
{
    const int port = open((m_devices.Path() / "com5").c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_EQ(flock(port, LOCK_EX), 0);
    Program program;
    const Outcome outcome = program.Finish(Start(program, "info --wait 1"));
    close(port);
    const std::string pid = std::to_string(getpid());
    Expect(outcome, 1, {"phnctl: com5 is in use by test_phnctl (pid " + pid + "). To mend it: "});
    EXPECT_FALSE(Has(outcome.err, "switch the handset off")) << outcome.err;
}

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
