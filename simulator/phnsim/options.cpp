#include "simulator/phnsim/options.h"

#include "simulator/handset/fault.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace simulator {
namespace {

constexpr int kUsageError = 2;

constexpr const char* kFooter = R"(
Control lines on standard input change the handset while it runs: "help" lists them.
Those of a script may also wait for the host and expect something of it (docs/simulator.md).
With --data the state is loaded from FILE if it exists, and saved there at the end.
docs/protocol.md says what the values of the state mean.
Ctrl-C or the control line "quit" ends the simulator and takes its port away; the end of
standard input does not.

Faults:
)";

// What is written of the exchanges and of the wire.
void AddFiles(CLI::App& app, Options& options)
{
    app.add_option("--log", options.log, "write every exchange as a JSON line")->type_name("FILE");
    app.add_option("--record", options.record, "record every byte with its time, as JSON lines")->type_name("FILE");
    app.add_option("--pcap", options.pcap, "write every frame for Wireshark, as pcapng")->type_name("FILE");
    app.add_option_function<std::vector<std::string>>(
           "--to-pcap",
           [&options](const std::vector<std::string>& files) {
               options.toPcap = files;
               throw CLI::Success();
           },
           "write the packets of a recording for Wireshark, and end")
        ->expected(2)
        ->option_text("RECORDING FILE");
    app.add_option_function<std::vector<std::string>>(
           "--mask",
           [&options](const std::vector<std::string>& files) {
               options.mask = files;
               throw CLI::Success();
           },
           "write a recording with made-up numbers, names and texts, and end")
        ->expected(2)
        ->option_text("RECORDING FILE");
}

// Who answers instead of the simulated handset.
void AddOtherHandsets(CLI::App& app, Options& options)
{
    app.add_option("--between", options.between, "pass all on to the handset at this port")->type_name("DEVICE");
    app.add_option("--replay", options.replay, "play the handset of a recording")->type_name("FILE");
}

// Throws what does not go together: what belongs to the simulated handset, with another one.
void CheckTogether(const CLI::App& app)
{
    for (const char* const other : {"--between", "--replay"})
        for (const char* const own :
             {"--data", "--fault", "--seed", "--trace", "--hex", "--script", "--strict", "--web"})
            if (app.count(other) != 0 && app.count(own) != 0)
                throw CLI::ExcludesError(other, own);
    for (const char* const other : {"--replay", "--log"})
        if (app.count("--between") != 0 && app.count(other) != 0)
            throw CLI::ExcludesError("--between", other);
}

} // namespace

std::variant<Options, int> ParseOptions(int argumentCount, char** arguments)
{
    Options options;
    std::uint16_t web = 0;
    CLI::App app("A simulated handset on a serial port.", "phnsim");
    app.footer(kFooter + FaultHelp());
    const PortOptions port(app);
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
    AddOtherHandsets(app, options);
    AddFiles(app, options);
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
        CheckTogether(app);
    } catch (const CLI::Success& success) {
        if (options.listCommands || !options.toPcap.empty() || !options.mask.empty())
            return options;
        return app.exit(success);
    } catch (const CLI::ParseError& error) {
        app.exit(error);
        return kUsageError;
    }
    options.trace = options.trace || options.hex;
    if (webOption->count() != 0)
        options.webPort = web;
    if (!options.replay.empty())
        options.recording = ReadRecording(options.replay);
    options.port = port.Choice(options.recording.header.kind);
    if (options.once && !options.port.tellsClose) {
        std::cerr << "phnsim: --once needs a port that tells when a host closes it; a serial port does not\n";
        return kUsageError;
    }
    return options;
}

} // namespace simulator
