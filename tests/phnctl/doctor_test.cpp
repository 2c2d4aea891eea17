// phnctl doctor: every trouble has its own finding, and the command that mends it.
#include "phnctl/handset_run.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

std::string Mended(const std::string& finding, const std::string& command)
{
    return finding + "\n" + std::string(24, ' ') + " to mend it: " + command + "\n";
}

using Doctor = HandsetRun;

TEST_F(Doctor, FindsTheHandsetAndTellsAMissingDirectoryFromAnEmptyOne)
{
    Expect(0, "doctor",
           {"ports     ok             device directory " + m_devices.Path().string() + ": 1 entry\n",
            "handset   ok             answers: Fjord 40\n"});
    Expect(0, "doctor --json", {"{\"ok\":true,\"findings\":[{\"step\":\"library\""});
    m_program.Set("PHNNRV_DEVICES", m_folder.Path().string());
    Expect(1, "doctor", {m_folder.Path().string() + ": 0 entries\n"});
    m_program.Set("PHNNRV_DEVICES", "/nonexistent/devices");
    Expect(1, "doctor", {"/nonexistent/devices: No such file or directory\n"});
}

TEST_F(Doctor, TellsEveryTroubleApart)
{
    const std::string busy = fs::read_symlink(m_devices.Path() / simulator::UsbInterfaceName("0001")).string();
    fs::create_symlink(busy, m_devices.Path() / "com1"); // the handset's terminal under a second name
    const int held = open(busy.c_str(), O_RDWR | O_NOCTTY);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    const std::string gone = (m_devices.Path() / "com3").string();
    fs::create_symlink("/dev/gone", gone);
    const std::string file = (m_devices.Path() / "com4").string();
    std::ofstream(file) << "no terminal";
    const std::string pid = std::to_string(getpid());
    Expect(1, "doctor",
           {Mended("port      busy           com1, serial port -> " + busy +
                       ": another program uses it: test_phnctl (pid " + pid + ")",
                   (geteuid() == 0 ? "kill " : "sudo kill ") + pid),
            Mended("port      unusable       com3, serial port -> /dev/gone: No such file or directory",
                   "rm '" + gone + "'"),
            "com4, serial port -> " + file + ": is no terminal\n",
            "handset   busy           there is no free port to ask on\n"});
    close(held);
}

} // namespace
