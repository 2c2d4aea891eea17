// The one form of times in JSON: ISO 8601, local time with its offset from UTC. Used by everything that answers with
// times.
#pragma once

#include <array>
#include <ctime>
#include <optional>
#include <string>

namespace phnctl {

// Year (four digits), month, day, hour, minute, second.
using LocalTime = std::array<unsigned, 6>;

// "2009-07-01T16:05:00+02:00"; nothing for what is no time.
std::optional<std::string> IsoTime(const LocalTime& time);
std::string IsoTime(std::time_t time);

} // namespace phnctl
