// What doctor sees of a Linux system: a made-up tree stands for /, a pseudo terminal for a port without rights.
#include "phnctl/handset/linux_findings.h"

#include "simulator/lines/device_directory.h"
#include "system/system.h"

#include <fstream>
#include <grp.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

void Write(const fs::path& file, const std::string& text)
{
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

TEST(Rule, TheFirstFileOfItsNameDecides)
{
    const std::string reload = " && sudo udevadm control --reload && sudo udevadm trigger";
    const std::tuple<std::vector<std::pair<const char*, const char*>>, const char*, std::string> cases[] = {
        {{}, "missing", "sudo cp 70-phnnrv.rules /etc/udev/rules.d/" + reload},
        {{{"shipped", "rule"}}, "missing", "sudo cp '/shipped/70-phnnrv.rules' /etc/udev/rules.d/" + reload},
        {{{"lib/udev/rules.d", "rule"}}, "ok", ""},
        {{{"lib/udev/rules.d", "rule"}, {"etc/udev/rules.d", ""}},
         "missing",
         "sudo rm '/etc/udev/rules.d/70-phnnrv.rules'" + reload},
    };
    for (const auto& [files, state, remedy] : cases) {
        const simulator::DeviceDirectory root;
        for (const auto& [folder, text] : files)
            Write(root.Path() / folder / "70-phnnrv.rules", text);
        phnctl::Finding finding = phnctl::FindRule(root.Path(), root.Path() / "shipped");
        if (const std::size_t at = finding.remedy.find(root.Path().string()); at != std::string::npos)
            finding.remedy.erase(at, root.Path().string().size());
        EXPECT_EQ(finding.state, state) << finding.detail;
        EXPECT_EQ(finding.remedy, remedy) << finding.detail;
    }
}

TEST(Drivers, OnlyAHandsetWithoutATerminalIsNamed)
{
    // Devices as the kernel shows them: the bus's entries are links into the tree of devices.
    const simulator::DeviceDirectory root;
    const fs::path devices = root.Path() / "sys/devices/usb1", bus = root.Path() / "sys/bus/usb/devices";
    const fs::path terminal = root.Path() / "sys/class/tty/ttyUSB0", port = devices / "1-10/1-10:1.0/ttyUSB0";
    for (const fs::path& folder : {bus, terminal, port})
        fs::create_directories(folder);
    fs::create_directory_symlink(port, terminal / "device");
    const auto plug = [&](const std::string& name, const std::string& vendor, const std::string& product) {
        Write(devices / name / "idVendor", vendor);
        Write(devices / name / "idProduct", product);
        fs::create_directory_symlink(devices / name, bus / name);
    };
    plug("1-1", "fffe\n", "0001\n"); // the one without
    plug("1-10", "fffe\n", "0001\n");
    plug("1-3", "1d6b\n", "0001\n");
    plug("1-4", "fffe\n", "$(x)\n");
    const auto findings = phnctl::FindDriverless(root.Path());
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_EQ(findings[0].detail, "USB device 1-1 (fffe:0001) is there, but no driver has made a terminal for it");
    EXPECT_EQ(findings[0].remedy, "sudo modprobe option && echo fffe 0001 | "
                                  "sudo tee /sys/bus/usb-serial/drivers/option1/new_id");
}

// Ends a child process that has become this user, with what it sees of the port.
[[noreturn]] void ShowPort(const std::string& path, uid_t user)
{
    constexpr gid_t kNoGroup = 65534;
    if (setgroups(0, nullptr) || setresgid(kNoGroup, kNoGroup, kNoGroup) || setresuid(user, user, user))
        _exit(1);
    const host::PortReport report = host::ExaminePort(path);
    std::fputs((report.reason + "|" + report.remedy).c_str(), stderr);
    _exit(report.state == host::PortState::NoPermission ? 0 : 1);
}

// The user games has a group of that name, but a process without groups got none of its rights by that.
TEST(Rights, TheMissingGroupIsNamedAndAPendingOneToo)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can become another user";
    const uid_t games = 5;
    const group* const group = getgrnam("games");
    ASSERT_NE(group, nullptr);
    int master = -1;
    int slave = -1;
    char path[64] = {};
    ASSERT_EQ(openpty(&master, &slave, path, nullptr, nullptr), 0);
    ASSERT_EQ(chown(path, 0, group->gr_gid) | chmod(path, 0660), 0);
    EXPECT_EXIT(ShowPort(path, games), testing::ExitedWithCode(0),
                "from the next login on.log out and in again, or for this shell: newgrp games");
    EXPECT_EXIT(ShowPort(path, 65534), testing::ExitedWithCode(0),
                "group games may use it, which this user does not belong to.sudo usermod -aG games \"\\$USER\"");
    close(slave);
    close(master);
}

} // namespace
