// Moments as text, as logs, traces and recordings have them: UTC with milliseconds, 2026-07-04T18:05:00.123Z.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace simulator {

using Moment = std::chrono::system_clock::time_point;

std::string ToText(Moment moment);
// None when the text has another form.
std::optional<Moment> ParseMoment(std::string_view text);

} // namespace simulator
