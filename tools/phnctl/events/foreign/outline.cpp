#include "phnctl/events/foreign/outline.h"

#include "phnctl/text/content_line.h"

namespace phnctl {

std::map<std::string, std::deque<ComponentOutline>> OutlineOf(std::string_view text)
{
    std::map<std::string, std::deque<ComponentOutline>> outlines;
    ComponentOutline* component = nullptr;
    bool isInAlarm = false;
    ContentLineReader reader(text);
    ContentLine line;
    while (reader.Next(line)) {
        const std::string value = line.name == "BEGIN" || line.name == "END" ? UpperCase(line.value) : "";
        if (line.name == "BEGIN" && value == "VALARM") {
            isInAlarm = component;
            if (component)
                component->alarms.emplace_back();
        } else if (line.name == "BEGIN") {
            component = &outlines[value].emplace_back();
            component->line = line.line;
            isInAlarm = false;
        } else if (line.name == "END") {
            isInAlarm = false;
        }
        if (component)
            (isInAlarm ? component->alarms.back() : component->lines).try_emplace(line.name, line.line);
    }
    return outlines;
}

} // namespace phnctl
