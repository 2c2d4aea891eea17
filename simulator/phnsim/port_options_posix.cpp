#include "simulator/phnsim/port_options.h"

#include <CLI/CLI.hpp>

#include <cstdint>
#include <filesystem>
#include <stdexcept>

#include <unistd.h>

namespace simulator {
namespace {

// What becomes a name, or a part of one, in the device directory stays in there.
std::string CheckName(const std::string& name)
{
    const bool isName = !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
    return isName ? std::string() : "\"" + name + "\" is no name for an entry of the device directory";
}

// What a newcomer meets first: the usual directory is root's to make.
void CheckDevices(const std::string& devices)
{
    const bool isThere = std::filesystem::is_directory(devices);
    if (isThere && access(devices.c_str(), W_OK | X_OK) == 0)
        return;
    throw std::runtime_error(
        (isThere ? "this user may not write into the device directory " : "there is no device directory ") + devices +
        "\nChoose another one with --devices or PHNNRV_DEVICES, which phnctl needs as well, and make "
        "it:\n  export PHNNRV_DEVICES=/tmp/handsets; mkdir -p $PHNNRV_DEVICES");
}

// A path, or an entry of the device directory.
LineOpener HandsetLines(const std::string& device, const std::string& devices)
{
    return DeviceLines(device.find('/') != std::string::npos ? device : devices + "/" + device);
}

} // namespace

struct PortOptions::Values
{
    std::string port{};
    std::string usb{};
    std::string modem{};
    std::string devices = "/dev/phnnrv";
    std::uint16_t tcp = 0;
    bool isTcp = false;
};

PortOptions::PortOptions(CLI::App& app) : values_(std::make_unique<Values>())
{
    auto* way = app.add_option_group(
        "port", "how it is reached (otherwise by --usb 0001; a modem port's recording by --modem 0001)");
    way->add_option("--port", values_->port, "a plain serial port of this name, such as com5")
        ->type_name("NAME")
        ->check(CheckName);
    way->add_option("--usb", values_->usb, "the diagnostic interface of a USB handset, such as 0001")
        ->type_name("INSTANCE")
        ->check(CheckName);
    way->add_option("--modem", values_->modem, "the modem interface of a USB handset, such as 0001")
        ->type_name("INSTANCE")
        ->check(CheckName);
    way->add_option("--tcp", values_->tcp, "a TCP port on 127.0.0.1")
        ->type_name("PORT")
        ->check(CLI::Range(1, 65535).description(""))
        ->each([this](const auto&) { values_->isTcp = true; });
    way->require_option(0, 1);
    app.add_option("--devices", values_->devices, "the device directory")
        ->envname("PHNNRV_DEVICES")
        ->capture_default_str();
}

PortOptions::~PortOptions() = default;

PortChoice PortOptions::Choice(PortKind usual) const
{
    auto [port, usb, modem, devices, tcp, isTcp] = *values_;
    if (port.empty() && usb.empty() && modem.empty())
        (usual == PortKind::Modem ? modem : usb) = "0001";
    const auto handset = [folder = devices](const std::string& device) { return HandsetLines(device, folder); };
    if (isTcp)
        return {.open = [number = tcp] { return TcpLines(number); },
                .openHandset = handset,
                .shown = "127.0.0.1:" + std::to_string(tcp)};
    const std::string name = !usb.empty() ? UsbInterfaceName(usb) : !modem.empty() ? ModemInterfaceName(modem) : port;
    return {.open =
                [folder = devices, name] {
                    CheckDevices(folder);
                    return PtyLines(folder, name);
                },
            .openHandset = handset,
            .kind = modem.empty() ? PortKind::Diagnostic : PortKind::Modem,
            .shown = devices + "/" + name};
}

} // namespace simulator
