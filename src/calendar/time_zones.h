// The time zones that the handset knows by number, and the abbreviations of further ones whose times are turned into
// UTC. Used by the iCalendar conversion; names are compared without regard to case. A name that neither table holds
// leaves a time floating.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

inline constexpr uint32_t kFloating = 0; // no zone: whatever time is local
inline constexpr uint32_t kUtc = 1;

// TIME_ZONE_SIZE names, by the handset's zone id.
inline constexpr std::string_view kTimeZones[] = {"LCAT", "GMT", "EST", "EDT",  "CST",  "CDT",  "MST",
                                                  "MDT",  "PST", "PDT", "AKST", "AKDT", "HAST", "HADT"};
inline constexpr uint32_t TIME_ZONE_SIZE = sizeof kTimeZones / sizeof kTimeZones[0];
static_assert(TIME_ZONE_SIZE == 14);

std::optional<uint32_t> FindTimeZoneID(std::string_view strName);

// The seconds to add to a wall time of the zone for UTC.
std::optional<int32_t> FindTimeZoneOffset(std::string_view strName);
