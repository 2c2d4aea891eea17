// How much resident memory a host gains with the library loaded and a handset open.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include <windows.h>

#include "figure.h"
#include "simulator/lines/device_directory.h"
#include "simulator/lines/simulator.h"

namespace {

long ResidentKiB()
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("VmRSS:", 0) == 0)
            return std::stol(line.substr(6));
    return 0;
}

} // namespace

int main()
{
    simulator::DeviceDirectory devices;
    setenv("PHNNRV_DEVICES", devices.Path().c_str(), 1);
    setenv("PHNNRV_REGISTRY", (devices.Path() / "none.reg").c_str(), 1);
    simulator::Simulator handset(devices.Path(), simulator::UsbInterfaceName("0001"));
    handset.Start();

    const long before = ResidentKiB();
    HMODULE library = LoadLibraryA("PHNNRV.dll");
    auto startup =
        library ? reinterpret_cast<uint32_t (*)()>(reinterpret_cast<void*>(GetProcAddress(library, "PHN_Startup")))
                : nullptr;
    if (!startup || startup() != 0) {
        std::fputs("bench_memory: no handset\n", stderr);
        return 1;
    }
    const long grown = ResidentKiB() - before;
    FreeLibrary(library);
    return bench::Judge({.what = "resident memory of library and open handset",
                         .value = static_cast<double>(grown),
                         .unit = "KiB",
                         .limit = 4096})
               ? 0
               : 1;
}
