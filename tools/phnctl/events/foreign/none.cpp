// A build without libical: the library's own text and the tool's own files are all that it reads.
#include "phnctl/events/file.h"
#include "phnctl/text/failure.h"

namespace phnctl {

std::vector<EventDraft> ReadForeignEvents(const std::string&)
{
    throw Failure(kUsage, "this phnctl is built without libical, which reads the calendars of other programs; it reads "
                          "only what it or the handset library wrote");
}

std::vector<EventTime> Occurrences(const EventTime&, const EventRule&, const EventTime&, const EventTime&, std::size_t)
{
    throw Failure(kUsage, "this phnctl is built without libical, which finds the coming occurrences; "
                          "'events list --stored' lists the events themselves");
}

} // namespace phnctl
