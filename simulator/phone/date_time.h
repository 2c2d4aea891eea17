// Date-times as text: "2009-03-15T12:00:00" in the state file and in traces, "-" for one that is all zero.
#pragma once

#include "simulator/phone/phone.h"

#include <optional>
#include <string>
#include <string_view>

namespace simulator {

std::string ToString(const DateTime& time);
// Empty when the text has another form or a number does not fit its field. No calendar is consulted.
std::optional<DateTime> ParseDateTime(std::string_view text);

} // namespace simulator
