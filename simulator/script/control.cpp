#include "simulator/script/control.h"

#include "simulator/script/control_arguments.h"
#include "simulator/script/handset_lines.h"
#include "simulator/script/script_lines.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace simulator {
namespace {

ControlLine Help(Arguments&);

ControlLine End(Arguments&)
{
    return {[](Control& control) { control.End(); }};
}

using Parse = ControlLine (*)(Arguments& arguments);

// Which lines a run has: all have those for the line and the script.
enum class Scope
{
    Always,
    Handset,
};

struct Row
{
    std::string_view name;
    std::string_view arguments;
    std::string_view help; // empty: another name of the row above
    Parse parse;
    Scope scope = Scope::Always;
};

constexpr Row kRows[] = {
    {"help", "", "this list", Help},
    {"show", "[PATH]", "the state, or a part of it: show battery, show contacts/3", Show, Scope::Handset},
    {"set", "PATH VALUE", "change a part: set battery/battery2 40, set network/network26 Fjord Mobile", Set,
     Scope::Handset},
    {"message", "NUMBER TEXT", "a message arrives", DeliverMessage, Scope::Handset},
    {"call", "in|out|missed NUMBER SECONDS", "a call goes into the call lists", AddCall, Scope::Handset},
    {"flags", "HEX", "set phone-variance flags", Flags, Scope::Handset},
    {"fault", "FAULT", "add a fault: fault silence@6*1 (phnsim --help lists them)", AddFault, Scope::Handset},
    {"faults", "", "list the faults", ListFaults, Scope::Handset},
    {"clear-faults", "[KIND]", "remove all faults, or those of one kind: clear-faults delay", ClearFaults,
     Scope::Handset},
    {"unplug", "", "take the handset away", Unplug},
    {"replug", "", "and put it back (also: plug)", Replug},
    {"plug", "", "", Replug},
    {"hangup", "", "drop the line", HangUp},
    {"trace", "on|hex|off", "print frames", SetTrace, Scope::Handset},
    {"save", "[FILE]", "write the state", Save, Scope::Handset},
    {"load", "[FILE]", "read the state", Load, Scope::Handset},
    {"wait", "MS", "the next line waits", Wait},
    {"wait-for", "COMMAND [N]", "the next line waits until the host has sent it N times (1)", WaitFor},
    {"after", "N COMMAND do LINE", "LINE is carried out when the host sends it the Nth time", After},
    {"every", "MS LINE", "LINE is carried out again and again", Every},
    {"expect", "COMMAND [COUNT] [FIELD=VALUE...]", "the host has sent it, so often, with these values", Expect},
    {"expect-none", "COMMAND [FIELD=VALUE...]", "the host has not sent it", ExpectNone},
    {"end", "", "end phnsim (also: quit)", End},
    {"quit", "", "", End},
};

ControlLine Help(Arguments&)
{
    return {[](Control& control) {
        constexpr std::size_t kColumn = 46;
        for (const Row& row : kRows) {
            if (row.help.empty() || (row.scope == Scope::Handset && !control.hasHandset))
                continue;
            std::string line = std::string(row.name) + " " + std::string(row.arguments);
            line.resize(std::max(kColumn, line.size() + 1), ' ');
            control.print(line.append(row.help));
        }
    }};
}

} // namespace

void Control::End()
{
    isOver = true;
    wakeup.Raise();
}

void Control::Fail(const std::string& sentence)
{
    const std::scoped_lock lock(mutex);
    if (!failure)
        failure = sentence;
    End();
}

std::optional<std::string> Control::Failure()
{
    const std::scoped_lock lock(mutex);
    return failure;
}

bool Control::Post(const std::string& line)
{
    constexpr std::size_t kMost = 256;
    const std::scoped_lock lock(mutex);
    if (posted.size() >= kMost)
        return false;
    posted.push_back(line);
    wakeup.Raise();
    return true;
}

std::vector<std::string> Control::TakePosted()
{
    const std::scoped_lock lock(mutex);
    return std::exchange(posted, {});
}

void Control::Report(const Place& place, const std::string& wrong)
{
    if (!place.isStrict)
        return print("error: " + wrong);
    Fail(place.file + ":" + std::to_string(place.line) + ": " + wrong);
}

ControlLine ParseControlLine(std::string_view line, const Place& place)
{
    if (line.size() > kLongestControlLine)
        throw std::invalid_argument("a control line has at most " + std::to_string(kLongestControlLine) + " bytes");
    line = line.substr(0, line.ends_with('\r') ? line.size() - 1 : line.size());
    Arguments arguments(line, place);
    const std::string name = arguments.Word();
    if (name.empty() || name.starts_with('#'))
        return {};
    const Row* const row =
        std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& one) { return one.name == name; });
    if (row == std::end(kRows))
        throw std::invalid_argument("\"" + name + "\" is no control line; \"help\" lists them");
    ControlLine parsed = row->parse(arguments);
    parsed.needsHandset = row->scope == Scope::Handset;
    if (!arguments.AtEnd())
        throw std::invalid_argument("\"" + arguments.Rest() + "\" is too much behind " + name);
    return parsed;
}

void RunControlLine(Control& control, const ControlLine& line, const Place& place)
{
    try {
        if (line.needsHandset && !control.hasHandset)
            throw std::invalid_argument("no simulated handset is here for this line; \"help\" lists those that work");
        line.run(control);
    } catch (const std::exception& error) {
        control.Report(place, error.what());
    }
}

} // namespace simulator
