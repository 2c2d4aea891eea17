// phnctl doctor: every trouble has its own finding, and the command that mends it.
#include "phnctl/program.h"
#include "simulator/simulator.h"

#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace phnctl_test {
namespace {

namespace fs = std::filesystem;

// A terminal of this test, entered in a device directory.
class Terminal
{
public:
    explicit Terminal(const fs::path& entry)
    {
        char name[64] = {};
        if (openpty(&m_master, &m_slave, name, nullptr, nullptr) != 0)
            throw std::system_error(errno, std::generic_category(), "openpty");
        m_path = name;
        fs::create_symlink(m_path, entry);
    }
    ~Terminal()
    {
        close(m_slave);
        close(m_master);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    int Descriptor() const { return m_slave; }
    const std::string& Path() const { return m_path; }

private:
    int m_master = -1;
    int m_slave = -1;
    std::string m_path;
};

bool HasLine(const std::string& text, const std::string& first, const std::string& second)
{
    return text.find(first + "\n" + std::string(24, ' ') + " to mend it: " + second + "\n") != std::string::npos;
}

TEST(Doctor, FindsTheHandset)
{
    const simulator::DeviceDirectory devices;
    simulator::Simulator handset(devices.Path(), simulator::UsbInterfaceName("0001"));
    handset.Start();
    Program program;
    program.Set("PHNNRV_DEVICES", devices.Path().string());
    const Outcome outcome = program.Run({"doctor"});
    EXPECT_EQ(outcome.status, 0) << outcome.out << outcome.err;
    EXPECT_NE(outcome.out.find("ports     ok             device directory " + devices.Path().string() + ": 1 entry\n"),
              std::string::npos)
        << outcome.out;
    EXPECT_NE(outcome.out.find("handset   ok             answers: Fjord 40\n"), std::string::npos) << outcome.out;
    EXPECT_EQ(program.Run(Split("doctor --json")).out.rfind("{\"ok\":true,\"findings\":[{\"step\":\"library\"", 0), 0u);
}

TEST(Doctor, TellsEveryTroubleApart)
{
    const simulator::DeviceDirectory devices;
    const auto entry = [&](const char* name) { return (devices.Path() / name).string(); };
    const Terminal busy(entry("com1"));
    ASSERT_EQ(flock(busy.Descriptor(), LOCK_EX), 0);
    fs::create_symlink("/dev/gone", entry("com3"));
    std::ofstream(entry("com4")) << "no terminal";

    Program program;
    program.Set("PHNNRV_DEVICES", devices.Path().string());
    const Outcome outcome = program.Run({"doctor"});
    EXPECT_EQ(outcome.status, 1);
    const std::string pid = std::to_string(getpid());
    const std::string kill = geteuid() == 0 ? "kill " : "sudo kill ";
    EXPECT_TRUE(HasLine(outcome.out,
                        "port      busy           com1, serial port -> " + busy.Path() +
                            ": another program uses it: test_phnctl (pid " + pid + ")",
                        kill + pid))
        << outcome.out;
    EXPECT_TRUE(HasLine(outcome.out,
                        "port      unusable       com3, serial port -> /dev/gone: No such file or directory",
                        "rm '" + entry("com3") + "'"))
        << outcome.out;
    EXPECT_NE(outcome.out.find("com4, serial port -> " + entry("com4") + ": is no terminal\n"), std::string::npos)
        << outcome.out;
    EXPECT_NE(outcome.out.find("handset   missing        there is no free port to ask on\n"), std::string::npos);
}

TEST(Doctor, NoPermissionIsNotBusy)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "root may use every port";
    const simulator::DeviceDirectory devices;
    const Terminal forbidden((devices.Path() / "com2").string());
    ASSERT_EQ(chmod(forbidden.Path().c_str(), 0), 0);
    Program program;
    program.Set("PHNNRV_DEVICES", devices.Path().string());
    const Outcome outcome = program.Run({"doctor"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(HasLine(outcome.out,
                        "port      no permission  com2, serial port -> " + forbidden.Path() +
                            ": this user may not read and write it",
                        "sudo chown \"$USER\" '" + forbidden.Path() + "'"))
        << outcome.out;
}

TEST(Doctor, TellsAMissingDirectoryFromAnEmptyOne)
{
    const simulator::DeviceDirectory devices;
    const std::pair<std::string, const char*> cases[] = {{devices.Path().string(), ": 0 entries\n"},
                                                         {"/nonexistent/devices", ": No such file or directory\n"}};
    for (const auto& [path, text] : cases) {
        Program program;
        program.Set("PHNNRV_DEVICES", path);
        const Outcome outcome = program.Run({"doctor"});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_NE(outcome.out.find(path + text), std::string::npos) << outcome.out;
    }
}

} // namespace
} // namespace phnctl_test
