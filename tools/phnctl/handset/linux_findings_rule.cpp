#include "phnctl/handset/linux_findings.h"

#include <fmt/format.h>

namespace phnctl {

namespace fs = std::filesystem;

namespace {

constexpr const char* kRule = "70-phnnrv.rules";
constexpr const char* kReload = "sudo udevadm control --reload && sudo udevadm trigger";

// As udev looks: the first file of a name hides the others, and an empty one or a link to /dev/null is no rule.
constexpr const char* kFolders[] = {"etc/udev/rules.d", "run/udev/rules.d", "usr/local/lib/udev/rules.d",
                                    "usr/lib/udev/rules.d", "lib/udev/rules.d"};

} // namespace

Finding FindRule(const fs::path& root, const fs::path& shippedIn)
{
    std::error_code error;
    for (const char* folder : kFolders) {
        const fs::path rule = root / folder / kRule;
        if (!fs::exists(fs::symlink_status(rule, error)))
            continue;
        if (fs::is_regular_file(rule, error) && !fs::is_empty(rule, error))
            return {"rule", "ok", rule.string(), ""};
        return {"rule", "missing", fmt::format("the udev rule is switched off: {} is empty", rule.string()),
                fmt::format("sudo rm '{}' && {}", rule.string(), kReload)};
    }
    const fs::path shipped = shippedIn / kRule;
    const std::string source = fs::exists(shipped, error) ? fmt::format("'{}'", shipped.string()) : kRule;
    return {"rule", "missing",
            fmt::format("the udev rule {} is not installed: no handset that is plugged in gets a port", kRule),
            fmt::format("sudo cp {} /etc/udev/rules.d/ && {}", source, kReload)};
}

} // namespace phnctl
