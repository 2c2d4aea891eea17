#include "phnctl/commands/report/scrub.h"

#include <cstdlib>
#include <regex>
#include <string_view>

namespace phnctl {

namespace {

std::string Replaced(std::string_view text, std::string_view what, std::string_view with)
{
    std::string replaced;
    for (std::size_t at = text.find(what); at != std::string_view::npos; at = text.find(what)) {
        replaced.append(text.substr(0, at)).append(with);
        text.remove_prefix(at + what.size());
    }
    return replaced.append(text);
}

} // namespace

std::string Scrubbed(const std::string& text)
{
    static const std::regex kInstance(R"((usb#vid_[0-9a-f]+&pid_[0-9a-f]+#)[^#\s]+)", std::regex::icase);
    const char* const home = std::getenv("HOME");
    const std::string scrubbed = std::regex_replace(text, kInstance, "$1...");
    return home && std::string_view(home).size() > 1 ? Replaced(scrubbed, home, "~") : scrubbed;
}

} // namespace phnctl
