#include "phnctl/events/file.h"

#include "phnctl/text/content_line.h"
#include "phnctl/text/text.h"

namespace phnctl {

namespace {

// A program that writes calendars names itself; the library does not, and never writes a summary or a duration.
bool IsForeign(std::string_view text)
{
    ContentLineReader reader(text);
    ContentLine line;
    bool isForeign = false;
    while (reader.Next(line)) {
        if (line.name == "PRODID")
            return line.value != kCalendarProduct;
        isForeign = isForeign || line.name == "SUMMARY" || line.name == "DURATION";
    }
    return isForeign;
}

std::vector<EventDraft> ReadEvents(const std::string& text)
{
    std::vector<EventDraft> drafts = IsForeign(text) ? ReadForeignEvents(text) : ReadOwnEvents(text);
    if (drafts.empty() && UpperCase(text).find("BEGIN:VCALENDAR") == std::string::npos)
        drafts.emplace_back().problem = "it is no calendar";
    return drafts;
}

} // namespace

std::vector<Candidate> EventsOfFile(const std::string& file, const std::string& text)
{
    const std::string whole = IsUtf8(text) ? text : FromHandset(text);
    std::vector<Candidate> candidates;
    for (EventDraft& draft : ReadEvents(whole)) {
        candidates.push_back(FitEvent(std::move(draft)));
        candidates.back().file = file;
    }
    return candidates;
}

} // namespace phnctl
