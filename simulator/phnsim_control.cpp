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
    if (rest.empty())
        throw std::invalid_argument("set needs a path and a value, such as: set battery/battery2 40");
    Handset& handset = control.simulator.Control();
    handset.Set(path, rest);
    control.print(std::string(path) + " = " + handset.Show(path));
}

void Flags(Control& control, std::string_view rest)
{
    rest.remove_prefix(rest.starts_with("0x") ? 2 : 0);
    std::uint16_t flags = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), flags, 16);
    if (error != std::errc() || end != rest.data() + rest.size())
        throw std::invalid_argument("flags needs a hexadecimal number of 16 bits");
    control.simulator.Control().Change(flags, [](Phone&) {});
    control.print("the host will be told");
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
    if (rest.empty())
        throw std::invalid_argument("fault needs a fault, such as silence@6*1; phnsim --help lists them");
    const Fault fault = ParseFault(rest);
    control.simulator.Control().AddFault(fault);
    control.print("fault " + ToString(fault));
}

void ListFaults(Control& control, std::string_view)
{
    const std::vector<Fault> faults = control.simulator.Control().Faults();
    for (const Fault& fault : faults)
        control.print(ToString(fault));
    if (faults.empty())
        control.print("no faults");
}

void ClearFaults(Control& control, std::string_view)
{
    control.simulator.Control().ClearFaults();
    control.print("no faults");
}

void Unplug(Control& control, std::string_view)
{
    const bool wasPlugged = control.simulator.IsPlugged();
    control.simulator.Unplug();
    control.print(wasPlugged ? "unplugged" : "unplugged already");
}

void Replug(Control& control, std::string_view)
{
    const bool wasPlugged = control.simulator.IsPlugged();
    control.simulator.Replug();
    control.print(wasPlugged ? "plugged in already" : "plugged in");
}

void HangUp(Control& control, std::string_view)
{
    const bool wasPlugged = control.simulator.IsPlugged();
    control.simulator.HangUp();
    control.print(wasPlugged ? "hung up; the line can be opened again" : "unplugged: there is no line to hang up");
}

void SetTrace(Control& control, std::string_view how)
{
    if (how != "on" && how != "hex" && how != "off")
        throw std::invalid_argument("trace is on, hex or off");
    control.simulator.Control().SetTrace(how == "off" ? Handset::TraceSink() : control.trace,
                                         how == "hex" ? TraceDetail::Hex : TraceDetail::Decoded);
    control.print("trace " + std::string(how));
}

std::string FileFor(const Control& control, std::string_view file)
{
    if (file.empty() && control.dataFile.empty())
        throw std::invalid_argument("a file name is needed here, since phnsim was started without --data");
    return file.empty() ? control.dataFile : std::string(file);
}

void Save(Control& control, std::string_view file)
{
    const std::string name = FileFor(control, file);
    control.simulator.Control().Save(name);
    control.print("saved to " + name);
}

void Load(Control& control, std::string_view file)
{
    const std::string name = FileFor(control, file);
    control.simulator.Control().Load(name);
    control.print("loaded from " + name);
}

void Quit(Control& control, std::string_view)
{
    control.isOver = true;
}

struct Row
{
    std::string_view name;
    std::string_view help; // empty: another name of the row above
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
    {"replug", "replug, plug           and put it back", Replug},
    {"plug", "", Replug},
    {"hangup", "hangup                 drop the line", HangUp},
    {"trace", "trace on|hex|off       print frames", SetTrace},
    {"save", "save [FILE]            write the state", Save},
    {"load", "load [FILE]            read the state", Load},
    {"quit", "quit                   end", Quit},
};

void Help(Control& control, std::string_view)
{
    for (const Row& row : kRows)
        if (!row.help.empty())
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
