#include "phnctl/handset/linux_findings.h"

#include <algorithm>
#include <cctype>
#include <fmt/format.h>
#include <fstream>
#include <iomanip>

namespace phnctl {

namespace fs = std::filesystem;

namespace {

constexpr const char* kVendor = "fffe";

// Four hexadecimal digits; empty where there is none.
std::string Identifier(const fs::path& file)
{
    std::string digits;
    std::ifstream(file) >> std::setw(4) >> digits;
    const bool isNumber = digits.size() == 4 &&
                          std::all_of(digits.begin(), digits.end(), [](unsigned char c) { return std::isxdigit(c); });
    return isNumber ? digits : "";
}

bool HasTerminal(const fs::path& device, const fs::path& terminals)
{
    std::error_code error;
    const std::string below = fs::canonical(device, error).string() + "/";
    for (const auto& terminal : fs::directory_iterator(terminals, error)) {
        const std::string name = terminal.path().filename().string();
        if ((name.starts_with("ttyUSB") || name.starts_with("ttyACM")) &&
            fs::canonical(terminal.path() / "device", error).string().starts_with(below))
            return true;
    }
    return false;
}

} // namespace

// The driver option serves vendor-specific interfaces of any device that it is told of, and leaves disks alone.
std::vector<Finding> FindDriverless(const fs::path& root)
{
    std::vector<Finding> findings;
    std::error_code error;
    for (const auto& device : fs::directory_iterator(root / "sys/bus/usb/devices", error)) {
        const std::string product = Identifier(device.path() / "idProduct");
        if (Identifier(device.path() / "idVendor") != kVendor || product.empty() ||
            HasTerminal(device.path(), root / "sys/class/tty"))
            continue;
        findings.push_back({"driver", "missing",
                            fmt::format("USB device {} ({}:{}) is there, but no driver has made a terminal for it",
                                        device.path().filename().string(), kVendor, product),
                            fmt::format("sudo modprobe option && echo {} {} | "
                                        "sudo tee /sys/bus/usb-serial/drivers/option1/new_id",
                                        kVendor, product)});
    }
    return findings;
}

} // namespace phnctl
