// Any file as a calendar: nothing crashes or hangs, and what can be held comes back unchanged, from the tool's own file
// and from the library, whose text may be anything as well: its texts are the handset's. The calendars of other
// programs are read where libical is linked.
#include <string>

#include "fuzz/require.h"
#include "phnctl/events/file.h"

using fuzz::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace phnctl;
    const std::string text(reinterpret_cast<const char*>(data), size);
    EventFromLibrary(text);
    for (const Candidate& candidate : EventsOfFile("file", text)) {
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
