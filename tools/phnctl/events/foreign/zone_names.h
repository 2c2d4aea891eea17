// What other programs call the zones of the IANA. Used by the reader of their calendars.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace phnctl {

// A zone of Windows, by CLDR's mapping.
struct WindowsZone
{
    std::string_view name;  // "Eastern Standard Time"
    std::string_view shown; // "Eastern Time (US & Canada)", without the "(UTC-05:00) " in front
    std::string_view iana;  // "America/New_York"
};
std::span<const WindowsZone> WindowsZones();

// The system's zone that a calendar names: as the IANA does, with any vendor's prefix
// ("/vendor/20230101/Europe/Berlin"), or as Windows does ("Eastern Standard Time", "(UTC-05:00) Eastern Time (US &
// Canada)"). Empty: there is none.
std::string SystemZone(std::string_view name);

} // namespace phnctl
