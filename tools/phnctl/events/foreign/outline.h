// Where in a calendar's text each component and each of its properties begins, so that a note can name the line:
// libical does not tell. Used by the reader of other programs' calendars.
#pragma once

#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace phnctl {

struct ComponentOutline
{
    std::size_t line = 0;
    std::map<std::string, std::size_t> lines;               // of each property, the first
    std::vector<std::map<std::string, std::size_t>> alarms; // the same of each VALARM; "BEGIN" is its own line
};

// In the order in which they begin: components of one name, VEVENT and others.
std::map<std::string, std::deque<ComponentOutline>> OutlineOf(std::string_view text);

} // namespace phnctl
