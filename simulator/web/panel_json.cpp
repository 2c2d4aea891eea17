#include "simulator/web/panel_json.h"

#include "simulator/commands/command.h"
#include "simulator/handset/hex.h"
#include "simulator/script/json_lines.h"

#include <nlohmann/json.hpp>

namespace simulator {
namespace {

using Json = nlohmann::ordered_json;

std::string Dump(const Json& value)
{
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json Vocabulary()
{
    Json faults = Json::array();
    for (const FaultKind& kind : AllFaultKinds())
        faults.push_back({{"name", kind.name}, {"form", kind.form}, {"help", kind.help}});
    Json commands = Json::array();
    for (const Command& command : AllCommands())
        commands.push_back({{"number", command.number}, {"name", command.name}});
    return {{"faults", faults}, {"commands", commands}};
}

} // namespace

Feed::Parts StateParts(Simulator& simulator)
{
    Feed::Parts parts;
    const Json state = Json::parse(simulator.Control().Show());
    for (const auto& [name, part] : state.items())
        parts[name] = Dump(part);
    Json faults = Json::array();
    for (const Fault& fault : simulator.Control().Faults())
        faults.push_back({{"kind", fault.kind->name}, {"text", ToString(fault)}});
    parts["faults"] = Dump(faults);
    parts["plugged"] = Dump(simulator.IsPlugged());
    static const std::string vocabulary = Dump(Vocabulary());
    parts["vocabulary"] = vocabulary;
    return parts;
}

std::string ExchangeJson(const Exchange& exchange, std::chrono::system_clock::time_point time)
{
    std::string json = ToJsonLine(exchange, time);
    json.pop_back();
    return json + ",\"received\":\"" + ToHex(exchange.received) + "\",\"sent\":\"" + ToHex(exchange.sent) + "\"}";
}

std::string TextJson(std::string_view text)
{
    return Dump(text);
}

} // namespace simulator
