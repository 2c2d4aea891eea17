// Exchanges and their fields as JSON, in logs and in recordings.
#pragma once

#include "simulator/handset/exchange.h"

#include <nlohmann/json.hpp>

#include <string>

namespace simulator {

using Json = nlohmann::ordered_json;

// A name that occurs more than once, as the days of an event do, stands for all its values in their order.
Json ToJson(const Fields& fields);

// Name, command, rejection, sequence, request and reply; what is empty is left out.
void AddExchange(Json& line, const Exchange& exchange);

// One line; what is no UTF-8 in it becomes U+FFFD.
std::string Dump(const Json& line);

} // namespace simulator
