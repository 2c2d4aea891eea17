// Any file as a calendar of the tool's or the library's: nothing crashes or hangs, and what can be held comes back
// unchanged, from the tool's own file and from the library. Calendars of other programs are libical's to read.
#include <cstdlib>
#include <string>

#include "phnctl/events/file.h"

namespace {

void Require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

namespace phnctl {

std::vector<EventDraft> ReadForeignEvents(const std::string&)
{
    return {};
}

} // namespace phnctl

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace phnctl;
    for (const Candidate& candidate : EventsOfFile("file", std::string(reinterpret_cast<const char*>(data), size))) {
        if (!candidate.fits)
            continue;
        const Entry complete = CompleteEvent(candidate.entry, nullptr);
        if (!complete.Find(event_property::kUid))
            continue; // a file gives it one
        const StoredEntry stored{0, complete};
        const auto back = EventsOfFile("file", FileOfEvents({&stored, 1}));
        Require(back.size() == 1 && back.front().fits);
        Require(CompleteEvent(back.front().entry, nullptr) == complete);
        Require(CompleteEvent(EventFromLibrary(EventToLibrary(complete)), nullptr) == complete);
    }
    return 0;
}
