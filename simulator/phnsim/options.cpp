#include "simulator/phnsim/options.h"

#include "simulator/handset/fault.h"

#include <CLI/CLI.hpp>

namespace simulator {
namespace {

constexpr int kUsageError = 2;

constexpr const char* kFooter = R"(
Control lines on standard input change the handset while it runs: "help" lists them.
Those of a script may also wait for the host and expect something of it (docs/simulator.md).
With --data the state is loaded from FILE if it exists, and saved there at the end.
docs/protocol.md says what the values of the state mean.
Ctrl-C or the control line "quit" ends the simulator and removes its link; the end of
standard input does not.

Faults:
)";

// What becomes a name, or a part of one, in the device directory stays in there.
std::string CheckName(const std::string& name)
{
    const bool isName = !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
    return isName ? std::string() : "\"" + name + "\" is no name for an entry of the device directory";
}

} // namespace

std::variant<Options, int> ParseOptions(int argumentCount, char** arguments)
{
    Options options;
    std::string port, usb, modem;
    std::uint16_t tcp = 0, web = 0;
    CLI::App app("A simulated handset on a serial port.", "phnsim");
    app.footer(kFooter + FaultHelp());
    auto* way = app.add_option_group("port", "how it is reached (one of these)");
    way->add_option("--port", port, "a plain serial port of this name, such as com5")
        ->type_name("NAME")
        ->check(CheckName);
    way->add_option("--usb", usb, "the diagnostic interface of a USB handset, such as 0001")
        ->type_name("INSTANCE")
        ->check(CheckName);
    way->add_option("--modem", modem, "the modem interface of a USB handset, such as 0001")
        ->type_name("INSTANCE")
        ->check(CheckName);
    auto* tcpOption = way->add_option("--tcp", tcp, "a TCP port on 127.0.0.1")->type_name("PORT");
    way->require_option(1);
    options.devices = "/dev/phnnrv";
    app.add_option("--devices", options.devices, "the device directory")
        ->envname("PHNNRV_DEVICES")
        ->capture_default_str();
    app.add_option("--data", options.data, "the state as JSON")->type_name("FILE");
    app.add_option("--fault", options.faults, "a fault, as below; may be given again")->type_name("FAULT");
    app.add_option("--seed", options.seed, "for faults that strike by chance")->capture_default_str();
    app.add_flag("--trace", options.trace, "print each frame, decoded, on one line");
    app.add_flag("--hex", options.hex, "with the bytes as well");
    app.add_option("--script", options.script, "control lines to carry out from the start; what is wrong ends it")
        ->type_name("FILE");
    app.add_flag("--strict", options.strict, "what is wrong on standard input ends it as well");
    app.add_flag("--ready", options.ready,
                 "print one JSON line when the port is there, everything else on standard error");
    app.add_option("--log", options.log, "write every exchange as a JSON line")->type_name("FILE");
    app.add_option("--record", options.record, "record every byte with its time, as JSON lines")->type_name("FILE");
    auto* webOption =
        app.add_option("--web", web, "a panel in the browser, on this port of 127.0.0.1 (default: a free one)")
            ->option_text("[PORT]")
            ->expected(0, 1)
            ->default_str("0");
    app.add_flag("--once", options.once, "end when the host has closed the port");
    app.add_flag_callback(
        "--list-commands",
        [&] {
            options.listCommands = true;
            throw CLI::Success();
        },
        "list the commands of the wire protocol that it answers, and end");
    app.set_version_flag("--version", "phnsim " PHN_VERSION);
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::Success& success) {
        if (options.listCommands)
            return options;
        return app.exit(success);
    } catch (const CLI::ParseError& error) {
        app.exit(error);
        return kUsageError;
    }
    options.trace = options.trace || options.hex;
    if (tcpOption->count() != 0)
        options.tcpPort = tcp;
    if (webOption->count() != 0)
        options.webPort = web;
    options.name = !usb.empty() ? UsbInterfaceName(usb) : !modem.empty() ? ModemInterfaceName(modem) : port;
    options.kind = modem.empty() ? PortKind::Diagnostic : PortKind::Modem;
    return options;
}

} // namespace simulator
