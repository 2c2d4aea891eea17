#include "simulator/script/json_lines.h"

#include "simulator/recording/json_fields.h"

namespace simulator {

std::string ToJsonLine(const Exchange& exchange, Moment time)
{
    Json line = {{"time", ToText(time)}};
    AddExchange(line, exchange);
    for (const Fault& fault : exchange.faults)
        line["faults"].push_back(ToString(fault));
    return Dump(line);
}

std::string ReadyJsonLine(const std::string& model, const std::string& port, const std::string& web)
{
    Json line = {{"ready", true}, {"model", model}, {"port", port}};
    if (!web.empty())
        line["web"] = web;
    return Dump(line);
}

} // namespace simulator
