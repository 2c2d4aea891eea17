#include "phnctl/events/file.h"

#include "phnctl/text/content_line.h"

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
    std::vector<Candidate> candidates;
    for (EventDraft& draft : ReadEvents(text)) {
        candidates.push_back(FitEvent(std::move(draft)));
        candidates.back().file = file;
    }
    return candidates;
}

} // namespace phnctl
