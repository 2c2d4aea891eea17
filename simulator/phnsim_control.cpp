#include "simulator/phnsim_control.h"

#include <algorithm>
#include <charconv>
#include <exception>
#include <stdexcept>

namespace simulator {
namespace {

std::string_view TakeWord(std::string_view& line)
{
    const std::size_t start = std::min(line.find_first_not_of(' '), line.size());
    const std::size_t end = std::min(line.find(' ', start), line.size());
    const std::string_view word = line.substr(start, end - start);
    line.remove_prefix(std::min(line.find_first_not_of(' ', end), line.size()));
    return word;
}

void Help(Control& control, std::string_view);

void Show(Control& control, std::string_view path)
{
    control.print(control.simulator.Control().Show(path));
}

void Set(Control& control, std::string_view rest)
{
    const std::string_view path = TakeWord(rest);
    if (path.empty())
        throw std::invalid_argument("set needs a path and a value, such as: set battery/battery2 40");
    control.simulator.Control().Set(path, rest);
}

void Flags(Control& control, std::string_view rest)
{
    rest.remove_prefix(rest.starts_with("0x") ? 2 : 0);
    std::uint16_t flags = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), flags, 16);
    if (error != std::errc() || end != rest.data() + rest.size())
        throw std::invalid_argument("flags needs a hexadecimal number of 16 bits");
    control.simulator.Control().Change(flags, [](Phone&) {});
}

void DeliverMessage(Control& control, std::string_view rest)
{
    Message message;
    message.address = TakeWord(rest);
    message.body = rest;
    control.print("message " + std::to_string(control.simulator.Control().Deliver(message)) + " arrived");
}

void AddFault(Control& control, std::string_view rest)
{
    control.simulator.Control().AddFault(rest);
}

void ListFaults(Control& control, std::string_view)
{
    for (const Fault& fault : control.simulator.Control().Faults())
        control.print(ToString(fault));
}

void ClearFaults(Control& control, std::string_view)
{
    control.simulator.Control().ClearFaults();
}

void Unplug(Control& control, std::string_view)
{
    control.simulator.Unplug();
}

void Replug(Control& control, std::string_view)
{
    control.simulator.Replug();
}

void HangUp(Control& control, std::string_view)
{
    control.simulator.HangUp();
}

void SetTrace(Control& control, std::string_view how)
{
    if (how != "on" && how != "hex" && how != "off")
        throw std::invalid_argument("trace is on, hex or off");
    control.simulator.Control().SetTrace(how == "off" ? Handset::TraceSink() : control.trace,
                                         how == "hex" ? TraceDetail::Hex : TraceDetail::Decoded);
}

std::string FileFor(const Control& control, std::string_view file)
{
    if (file.empty() && control.dataFile.empty())
        throw std::invalid_argument("a file name is needed here, since phnsim was started without --data");
    return file.empty() ? control.dataFile : std::string(file);
}

void Save(Control& control, std::string_view file)
{
    control.simulator.Control().Save(FileFor(control, file));
}

void Load(Control& control, std::string_view file)
{
    control.simulator.Control().Load(FileFor(control, file));
}

void Quit(Control& control, std::string_view)
{
    control.isOver = true;
}

struct Row
{
    std::string_view name;
    std::string_view help;
    void (*execute)(Control& control, std::string_view rest);
};

constexpr Row kRows[] = {
    {"help", "help                   this list", Help},
    {"show", "show [PATH]            the state, or a part of it: show battery, show contacts/3", Show},
    {"set", "set PATH VALUE         change a part: set battery/battery2 40, set network/network26 Fjord Mobile", Set},
    {"message", "message FROM TEXT      a message arrives", DeliverMessage},
    {"flags", "flags HEX              set phone-variance flags", Flags},
    {"fault", "fault FAULT            add a fault: fault silence@6*1 (phnsim --help lists them)", AddFault},
    {"faults", "faults                 list the faults", ListFaults},
    {"clear-faults", "clear-faults           remove all faults", ClearFaults},
    {"unplug", "unplug                 take the handset away", Unplug},
    {"replug", "replug                 and put it back", Replug},
    {"hangup", "hangup                 drop the line", HangUp},
    {"trace", "trace on|hex|off       print frames", SetTrace},
    {"save", "save [FILE]            write the state", Save},
    {"load", "load [FILE]            read the state", Load},
    {"quit", "quit                   end", Quit},
};

void Help(Control& control, std::string_view)
{
    for (const Row& row : kRows)
        control.print(row.help);
}

} // namespace

void ExecuteControlLine(Control& control, std::string_view line)
try {
    const std::string_view word = TakeWord(line);
    if (word.empty())
        return;
    for (const Row& row : kRows)
        if (row.name == word)
            return row.execute(control, line);
    throw std::invalid_argument("\"" + std::string(word) + "\" is no control line; \"help\" lists them");
} catch (const std::exception& error) {
    control.print(std::string("error: ") + error.what());
}

} // namespace simulator
