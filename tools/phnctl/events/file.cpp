#include "phnctl/events/file.h"

#include "phnctl/text/content_line.h"
#include "phnctl/text/text.h"

namespace phnctl {

namespace {

std::vector<EventDraft> ReadEvents(const std::string& text)
{
    auto own = ReadOwnEvents(text);
    std::vector<EventDraft> drafts = own ? std::move(*own) : ReadForeignEvents(text);
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
