#include "phnctl/commands/report/scrub.h"

#include <cstdlib>
#include <regex>
#include <string_view>

namespace phnctl {

namespace {

std::string Replaced(std::string text, std::string_view what, std::string_view with)
{
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
    return text;
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
