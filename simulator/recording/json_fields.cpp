#include "simulator/recording/json_fields.h"

namespace simulator {

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

void AddExchange(Json& line, const Exchange& exchange)
{
    line["name"] = exchange.name;
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
}

std::string Dump(const Json& line)
{
    return line.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace simulator
