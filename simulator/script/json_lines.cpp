#include "simulator/script/json_lines.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <ctime>

namespace simulator {
namespace {

using Json = nlohmann::ordered_json;

std::string Utc(std::chrono::system_clock::time_point time)
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count() % 1000;
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    std::array<char, 32> date{};
    std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &utc);
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%s.%03dZ", date.data(), static_cast<int>(milliseconds));
    return text.data();
}

// A name that occurs more than once, as the days of an event do, stands for all its values in their order.
Json ToJson(const Fields& fields)
{
    Json object = Json::object();
    for (const Field& field : fields) {
        const Json value = field.kind == Field::Kind::Number ? Json(std::stoll(field.value)) : Json(field.value);
        if (!object.contains(field.name))
            object[field.name] = value;
        else if (object[field.name].is_array())
            object[field.name].push_back(value);
        else
            object[field.name] = Json::array({object[field.name], value});
    }
    return object;
}

std::string Dump(const Json& line)
{
    return line.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace

std::string ToJsonLine(const Exchange& exchange, std::chrono::system_clock::time_point time)
{
    Json line = {{"time", Utc(time)}, {"name", exchange.name}};
    if (exchange.command != 0 && exchange.command != kAtCommands && exchange.command != kPortClosed)
        line["command"] = exchange.command;
    if (!exchange.rejection.empty())
        line["rejected"] = exchange.rejection;
    if (exchange.sequence)
        line["sequence"] = *exchange.sequence;
    if (!exchange.request.empty())
        line["request"] = ToJson(exchange.request);
    if (!exchange.reply.empty())
        line["reply"] = ToJson(exchange.reply);
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
