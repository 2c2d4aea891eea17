// phnsim: a simulated handset on a serial port, driven by control lines in a script and on standard input.
#include "simulator/commands/command.h"
#include "simulator/phnsim/counterpart.h"
#include "simulator/phnsim/end_request.h"
#include "simulator/phnsim/named_files.h"
#include "simulator/phnsim/options.h"
#include "simulator/phnsim/standard_input.h"
#include "simulator/phnsim/wire_files.h"
#include "simulator/recording/mask.h"
#include "simulator/script/json_lines.h"
#include "simulator/script/loop.h"
#include "simulator/web/panel.h"

#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>

namespace {

using namespace simulator;

constexpr int kFailed = 1;
constexpr int kUsageError = 2;

void ListCommands()
{
    for (const Command& command : AllCommands())
        std::printf("%3u  %s\n", command.number, command.name);
}

void Print(std::FILE* stream, std::string_view line)
{
    std::fprintf(stream, "%.*s\n", static_cast<int>(line.size()), line.data());
    std::fflush(stream);
}

void Prepare(Handset& handset, const Options& options, const Handset::TraceSink& trace)
{
    if (!options.data.empty() && std::filesystem::exists(options.data))
        handset.Load(options.data);
    handset.Seed(options.seed);
    for (const std::string& fault : options.faults)
        handset.AddFault(fault);
    if (options.trace)
        handset.SetTrace(trace, options.hex ? TraceDetail::Hex : TraceDetail::Decoded);
}

// Called for each exchange; throws nothing, so that a full disk is told at the end, by Check().
class ExchangeLog
{
public:
    explicit ExchangeLog(const std::string& file) : file_(file)
    {
        if (!file.empty())
            stream_.open(file);
        Check();
    }

    void Write(const Exchange& exchange)
    {
        if (!file_.empty())
            stream_ << ToJsonLine(exchange, std::chrono::system_clock::now()) << std::endl;
    }

    void Check() const
    {
        if (!stream_)
            throw std::runtime_error(file_ + " cannot be written");
    }

private:
    const std::string file_;
    std::ofstream stream_;
};

// Stops the serving thread before what it uses goes.
struct StopAtEnd
{
    ~StopAtEnd() { simulator.Stop(); }
    Simulator& simulator;
};

// Offers the port and works until the end.
void Serve(const Options& options, Control& control, Counterpart& counterpart, const std::string& web)
{
    const StopAtEnd stop{control.simulator};
    Loop loop(control, {.file = "standard input", .isStrict = options.strict}, counterpart.Closings());
    if (!options.script.empty()) {
        std::ifstream script(options.script);
        loop.Script().AddAll(script, options.script);
    }
    if (control.isOver) // a line cannot be read
        return;
    const auto end = WatchEndRequests([&] { loop.Stop("a signal has ended phnsim"); });
    control.simulator.Start();
    loop.Script().Advance();
    if (control.isOver) // a host that is told to begin would find no port
        return;
    const StandardInput input([&](std::string line) { loop.Take(std::move(line)); });
    const std::string name = counterpart.Name(control.simulator);
    if (options.ready)
        Print(stdout, ReadyJsonLine(name, options.port.shown, web));
    else
        control.print("serving " + name + " on " + options.port.shown);
    if (!options.ready && !web.empty())
        Print(stdout, "panel at " + web);
    loop.Run();
    counterpart.ReportMissing();
}

int TurnIntoPcap(const std::string& recording, const std::string& file)
{
    const auto [header, packets] = ReadRecording(recording);
    PcapngWriter capture(file, header.kind);
    for (const RecordedPacket& recorded : packets)
        capture.Write(recorded.packet);
    capture.Check();
    return 0;
}

int Run(const Options& options)
{
    if (options.listCommands) {
        ListCommands();
        return 0;
    }
    CheckFilesDiffer(options);
    if (!options.toPcap.empty())
        return TurnIntoPcap(options.toPcap[0], options.toPcap[1]);
    if (!options.mask.empty()) {
        MaskRecording(options.mask[0], options.mask[1]);
        return 0;
    }
    PrepareProcess();
    // Standard output is for programs once they have asked for the ready line.
    const auto print = [&](std::string_view line) { Print(options.ready ? stderr : stdout, line); };
    const auto trace = [&](std::string_view line) {
        print(ToText(std::chrono::system_clock::now()) + " " + std::string(line));
    };
    ExchangeLog log(options.log);
    WireFiles files(options);
    Wakeup wakeup;
    History history(wakeup);
    Counterpart counterpart(options);
    Simulator simulator(files.Tap(options.port.open()), counterpart.Conversations());
    Prepare(simulator.Control(), options, trace);
    Control control{.simulator = simulator,
                    .history = history,
                    .wakeup = wakeup,
                    .dataFile = options.data,
                    .hasHandset = options.replay.empty() && options.between.empty(),
                    .print = print,
                    .trace = trace};
    counterpart.ReportTo(control);
    simulator.WhenLost([&](const std::string& why) {
        if (!control.isOver) // as by the end of another handset
            control.Fail("the port is lost: " + why);
    });
    const std::unique_ptr<Panel> panel = options.webPort ? std::make_unique<Panel>(control, *options.webPort) : nullptr;
    if (panel)
        control.print = [&](std::string_view line) {
            print(line);
            panel->Say(line);
        };
    simulator.Control().SetWatcher([&](const Exchange& exchange) {
        log.Write(exchange);
        if (panel)
            panel->Show(exchange);
        history.Add(exchange);
    });
    Serve(options, control, counterpart, panel ? panel->Address() : "");
    if (!options.data.empty())
        simulator.Control().Save(options.data);
    log.Check();
    files.Check();
    if (control.failure)
        throw std::runtime_error(*control.failure);
    return 0;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    try {
        const auto parsed = ParseOptions(argumentCount, arguments);
        if (const int* status = std::get_if<int>(&parsed))
            return *status;
        return Run(std::get<Options>(parsed));
    } catch (const std::invalid_argument& error) {
        std::fprintf(stderr, "phnsim: %s\n", error.what());
        return kUsageError;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "phnsim: %s\n", error.what());
        return kFailed;
    }
}
