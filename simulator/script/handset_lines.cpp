#include "simulator/script/handset_lines.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <ctime>
#include <iterator>
#include <stdexcept>

namespace simulator {
namespace {

// `convert` is gmtime_r or localtime_r.
DateTime Now(std::tm* (*convert)(const std::time_t*, std::tm*))
{
    const std::time_t now = std::time(nullptr);
    std::tm time{};
    convert(&now, &time);
    return {.year = static_cast<std::uint16_t>(time.tm_year + 1900),
            .month = static_cast<std::uint8_t>(time.tm_mon + 1),
            .day = static_cast<std::uint8_t>(time.tm_mday),
            .hour = static_cast<std::uint8_t>(time.tm_hour),
            .minute = static_cast<std::uint8_t>(time.tm_min),
            .second = static_cast<std::uint16_t>(time.tm_sec)};
}

std::string FileFor(const Control& control, const std::string& file)
{
    if (file.empty() && control.dataFile.empty())
        throw std::invalid_argument("a file name is needed here, since phnsim was started without --data");
    return file.empty() ? control.dataFile : file;
}

} // namespace

ControlLine Show(Arguments& arguments)
{
    return {[path = arguments.Rest()](Control& control) { control.print(control.simulator.Control().Show(path)); }};
}

ControlLine Set(Arguments& arguments)
{
    const std::string path = arguments.Word();
    if (arguments.AtEnd())
        throw std::invalid_argument("set needs a path and a value, such as: set battery/battery2 40");
    return {[path, value = arguments.Rest()](Control& control) {
        Handset& handset = control.simulator.Control();
        handset.Set(path, value);
        control.print(path + " = " + handset.Show(path));
    }};
}

ControlLine Flags(Arguments& arguments)
{
    const std::string word = arguments.Word();
    const std::string_view digits = std::string_view(word).substr(word.starts_with("0x") ? 2 : 0);
    std::uint16_t flags = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), flags, 16);
    if (error != std::errc() || end != digits.data() + digits.size())
        throw std::invalid_argument("flags needs a hexadecimal number of 16 bits");
    return {[flags = flags](Control& control) {
        control.simulator.Control().Change(flags, [](Phone&) {});
        control.print("the host will be told");
    }};
}

ControlLine DeliverMessage(Arguments& arguments)
{
    Message message;
    message.address = arguments.Word();
    message.body = arguments.Text();
    if (message.address.empty())
        throw std::invalid_argument("message needs a number and a text");
    return {[message](Control& control) mutable {
        message.time = Now(gmtime_r);
        control.print("message " + std::to_string(control.simulator.Control().Deliver(message)) + " arrived");
    }};
}

ControlLine AddCall(Arguments& arguments)
{
    constexpr std::string_view kLists[] = {"out", "in", "missed"}; // 1 to 3
    constexpr std::uint64_t kLongest = 0xFFFFFFFF;
    std::string way = arguments.Word();
    std::transform(way.begin(), way.end(), way.begin(), [](unsigned char c) { return std::tolower(c); });
    const auto* const list = std::find(std::begin(kLists), std::end(kLists), way);
    if (list == std::end(kLists))
        throw std::invalid_argument("a call is in, out or missed");
    Call call;
    call.list = static_cast<std::uint32_t>(list - std::begin(kLists)) + 1;
    call.text = arguments.Word();
    call.duration = static_cast<std::uint32_t>(arguments.Number(0, kLongest));
    return {[call](Control& control) mutable {
        call.time = Now(localtime_r);
        std::uint32_t id = 1;
        control.simulator.Control().Change(0, [&](Phone& phone) {
            if (!phone.calls.empty())
                id = phone.calls.rbegin()->first + 1;
            phone.calls[id] = call;
        });
        control.print("call " + std::to_string(id) + " is listed");
    }};
}

ControlLine AddFault(Arguments& arguments)
{
    if (arguments.AtEnd())
        throw std::invalid_argument("fault needs a fault, such as silence@6*1; phnsim --help lists them");
    return {[fault = ParseFault(arguments.Word())](Control& control) {
        control.simulator.Control().AddFault(fault);
        control.print("fault " + ToString(fault));
    }};
}

ControlLine ListFaults(Arguments&)
{
    return {[](Control& control) {
        const std::vector<Fault> faults = control.simulator.Control().Faults();
        for (const Fault& fault : faults)
            control.print(ToString(fault));
        if (faults.empty())
            control.print("no faults");
    }};
}

ControlLine ClearFaults(Arguments& arguments)
{
    if (arguments.AtEnd())
        return {[](Control& control) {
            control.simulator.Control().ClearFaults();
            control.print("no faults");
        }};
    const FaultKind& kind = FindFaultKind(arguments.Word());
    return {[&kind](Control& control) {
        control.simulator.Control().ClearFaults(kind);
        control.print("no fault " + std::string(kind.name));
    }};
}

ControlLine Unplug(Arguments&)
{
    return {[](Control& control) {
        const bool wasPlugged = control.simulator.IsPlugged();
        control.simulator.Unplug();
        control.print(wasPlugged ? "unplugged" : "unplugged already");
    }};
}

ControlLine Replug(Arguments&)
{
    return {[](Control& control) {
        const bool wasPlugged = control.simulator.IsPlugged();
        control.simulator.Replug();
        control.print(wasPlugged ? "plugged in already" : "plugged in");
    }};
}

ControlLine HangUp(Arguments&)
{
    return {[](Control& control) {
        const bool wasPlugged = control.simulator.IsPlugged();
        control.simulator.HangUp();
        control.print(wasPlugged ? "hung up; the line can be opened again" : "unplugged: there is no line to hang up");
    }};
}

ControlLine SetTrace(Arguments& arguments)
{
    const std::string how = arguments.Word();
    if (how != "on" && how != "hex" && how != "off")
        throw std::invalid_argument("trace is on, hex or off");
    return {[how](Control& control) {
        control.simulator.Control().SetTrace(how == "off" ? Handset::TraceSink() : control.trace,
                                             how == "hex" ? TraceDetail::Hex : TraceDetail::Decoded);
        control.print("trace " + how);
    }};
}

ControlLine Save(Arguments& arguments)
{
    return {[file = arguments.Rest()](Control& control) {
        const std::string name = FileFor(control, file);
        control.simulator.Control().Save(name);
        control.print("saved to " + name);
    }};
}

ControlLine Load(Arguments& arguments)
{
    return {[file = arguments.Rest()](Control& control) {
        const std::string name = FileFor(control, file);
        control.simulator.Control().Load(name);
        control.print("loaded from " + name);
    }};
}

} // namespace simulator
