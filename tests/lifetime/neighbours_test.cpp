// The library beside what else a process and a system have: a host with functions of its own that are named like calls
// of the stand-in, and a folder that the user may not write to. Each test is a process of its own under ctest.
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "simulator/lines/device_directory.h"
#include "simulator/lines/simulator.h"

namespace fs = std::filesystem;

namespace {

std::atomic<int> calls = 0;

} // namespace

#define HOSTS_OWN(name)                                                                                                \
    extern "C" __attribute__((visibility("default"))) int name()                                                       \
    {                                                                                                                  \
        return ++calls;                                                                                                \
    }
HOSTS_OWN(CreateFileA)
HOSTS_OWN(ReadFile)
HOSTS_OWN(SetEvent)
HOSTS_OWN(Sleep)
HOSTS_OWN(WriteFile)

namespace {

class Neighbours : public testing::Test
{
protected:
    Neighbours()
    {
        fs::create_directory(folder_ / "devices");
        setenv("PHNNRV_DEVICES", (folder_ / "devices").c_str(), 1);
        setenv("PHNNRV_REGISTRY", (folder_ / "phnnrv.reg").c_str(), 1);
    }

    const simulator::DeviceDirectory directory_;
    const fs::path folder_ = directory_.Path();
};

TEST_F(Neighbours, FunctionsOfTheHostAreNotCalled)
{
    simulator::Simulator handset(folder_ / "devices", simulator::UsbInterfaceName("0001"));
    handset.Start();
    void* const library = dlopen(PHN_LIBRARY, RTLD_NOW);
    ASSERT_NE(library, nullptr) << dlerror();
    for (const char* name : {"PHN_Startup", "PHN_Shutdown"})
        EXPECT_EQ(reinterpret_cast<unsigned (*)()>(dlsym(library, name))(), 0u) << name;
    dlclose(library);
    EXPECT_EQ(calls, 0);
}

TEST_F(Neighbours, TheLogGoesToTheUsersStateFolderFromWhereNobodyMayWrite)
{
    std::ofstream(folder_ / "phnnrv.reg") << "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n"
                                             "\"Logging Level\"=dword:000fffff\n";
    const fs::path system = folder_ / "system", library = system / "libphnnrv.so.0.1", home = folder_ / "home";
    fs::create_directory(system);
    fs::create_directory(home);
    fs::copy_file(PHN_LIBRARY, library);
    setenv("XDG_STATE_HOME", (home / "state").c_str(), 1);
    fs::permissions(folder_, fs::perms{0755});
    fs::permissions(system, fs::perms{0555});
    constexpr uid_t kNobody = 65534;
    const bool isRoot = geteuid() == 0;
    if (isRoot) {
        ASSERT_EQ(chown(home.c_str(), kNobody, kNobody), 0);
        ASSERT_EQ(seteuid(kNobody), 0);
    }
    void* const loaded = dlopen(library.c_str(), RTLD_NOW);
    ASSERT_EQ(isRoot ? seteuid(0) : 0, 0);
    ASSERT_NE(loaded, nullptr) << dlerror();
    dlclose(loaded);
    fs::permissions(system, fs::perms{0755});

    EXPECT_EQ(std::distance(fs::directory_iterator(system), {}), 1);
    const fs::path log = fs::directory_iterator(home / "state/phnnrv")->path();
    EXPECT_TRUE(log.filename().string().starts_with("libphnnrv.so.0.1") && log.extension() == ".log") << log;
    EXPECT_EQ(fs::status(log).permissions(), fs::perms{0600});
    EXPECT_EQ(fs::status(log.parent_path()).permissions(), fs::perms{0700});
}

} // namespace
