#include "calendar/time_zones.h"

#include <algorithm>
#include <iterator>

#include "common/ascii_case.h"

namespace {

struct STimeZoneOffset
{
    std::string_view strName;
    int nHours; // what to add to the zone's wall time for UTC
    int nMinutes;
};

// The order is that in which names are looked for.
constexpr STimeZoneOffset kTimeZoneOffsets[] = {
    {"ACDT", -10, -30}, {"ACST", -9, -30},  {"AEDT", -11, 0},  {"AEST", -10, 0}, {"AT", 2, 0},     {"AWDT", -9, 0},
    {"AWST", -8, 0},    {"BAT", -3, 0},     {"BDST", -2, 0},   {"BET", 11, 0},   {"BST", -1, 0},   {"BT", -3, 0},
    {"BZT2", 3, 0},     {"CADT", -10, -30}, {"CAST", -9, -30}, {"CAT", 10, 0},   {"CCT", -8, 0},   {"CED", -2, 0},
    {"CET", -1, 0},     {"EAST", -10, 0},   {"EED", -3, 0},    {"EET", -2, 0},   {"EEST", -3, 0},  {"FST", -2, 0},
    {"FWT", -1, 0},     {"GST", -10, 0},    {"IDLE", -12, 0},  {"IDLW", 12, 0},  {"IST", -5, -30}, {"IT", -3, -30},
    {"JST", -9, 0},     {"JT", -7, 0},      {"KST", -9, 0},    {"MED", -2, 0},   {"MET", -1, 0},   {"MEST", -2, 0},
    {"MEWT", -1, 0},    {"MT", -8, 0},      {"NDT", 2, 30},    {"NFT", 3, 30},   {"NT", 11, 0},    {"NST", -6, -30},
    {"NZ", -11, 0},     {"NZST", -12, 0},   {"NZDT", -13, 0},  {"NZT", -12, 0},  {"ROK", -9, 0},   {"SAD", -10, 0},
    {"SAST", -9, 0},    {"SAT", -9, 0},     {"SDT", -10, 0},   {"SST", -2, 0},   {"SWT", -1, 0},   {"USZ3", -4, 0},
    {"USZ4", -5, 0},    {"USZ5", -6, 0},    {"USZ6", -7, 0},   {"UZ10", -11, 0}, {"WAT", 1, 0},    {"WET", 0, 0},
    {"WST", -8, 0},     {"YDT", 8, 0},      {"YST", 9, 0},     {"ZP4", -4, 0},   {"ZP5", -5, 0},   {"ZP6", -6, 0}};
static_assert(std::size(kTimeZoneOffsets) == 66);

} // namespace

std::optional<uint32_t> FindTimeZoneID(std::string_view strName)
{
    for (uint32_t dwZone = 0; dwZone < TIME_ZONE_SIZE; ++dwZone)
        if (EqualsIgnoringCase(kTimeZones[dwZone], strName))
            return dwZone;
    return std::nullopt;
}

std::optional<int32_t> FindTimeZoneOffset(std::string_view strName)
{
    const auto* const pZone = std::ranges::find_if(
        kTimeZoneOffsets, [strName](const STimeZoneOffset& Zone) { return EqualsIgnoringCase(Zone.strName, strName); });
    if (pZone == std::end(kTimeZoneOffsets))
        return std::nullopt;
    return (pZone->nHours * 60 + pZone->nMinutes) * 60;
}
