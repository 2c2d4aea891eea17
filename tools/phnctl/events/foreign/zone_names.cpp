#include "phnctl/events/foreign/zone_names.h"

#include "phnctl/text/content_line.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <libical/ical.h>

namespace phnctl {

namespace {

bool IsZoneFile(std::string_view name)
{
    constexpr std::string_view kMagic = "TZif";
    if (name.empty() || name.starts_with('/') ||
        name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+-_/") !=
            std::string_view::npos)
        return false;
    const std::filesystem::path file = std::filesystem::path(icaltzutil_get_zone_directory()) / name;
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return false;
    std::string magic(kMagic.size(), '\0');
    std::ifstream(file, std::ios::binary).read(magic.data(), static_cast<std::streamsize>(magic.size()));
    return magic == kMagic;
}

std::string_view IanaNameOf(std::string_view windowsName)
{
    // Its offset is "(UTC-05:00)" or, of old, "(GMT-05:00)".
    const std::size_t offset = windowsName.starts_with('(') ? windowsName.find(") ") : std::string_view::npos;
    const std::string shown =
        UpperCase(offset == std::string_view::npos ? windowsName : windowsName.substr(offset + 2));
    const auto found = std::ranges::find_if(WindowsZones(), [&](const WindowsZone& zone) {
        return UpperCase(zone.name) == shown || UpperCase(zone.shown) == shown;
    });
    return found == WindowsZones().end() ? std::string_view() : found->iana;
}

} // namespace

std::string SystemZone(std::string_view name)
{
    if (IsZoneFile(name))
        return std::string(name);
    if (const std::string_view iana = IanaNameOf(name); IsZoneFile(iana))
        return std::string(iana);
    for (std::size_t slash = name.find('/'); slash != std::string_view::npos; slash = name.find('/', slash + 1)) {
        const std::string_view rest = name.substr(slash + 1);
        if (rest.find('/') != std::string_view::npos && IsZoneFile(rest))
            return std::string(rest);
    }
    return {};
}

} // namespace phnctl
