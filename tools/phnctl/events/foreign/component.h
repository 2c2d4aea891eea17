// What a component of another program's calendar says, as values that are read from libical once: everything behind
// this works on them. Their times keep the zones of the calendar, which must outlive them.
#pragma once

#include "phnctl/events/event.h"
#include "phnctl/events/foreign/assembly.h"
#include "phnctl/events/foreign/libical.h"

#include <optional>
#include <string>
#include <vector>

namespace phnctl {

struct Component
{
    // Of a series: the component takes its place.
    struct Occurrence
    {
        icaltimetype time;
        std::string written;
        bool isForAllLater = false; // and that of those behind it
    };
    struct Alarm
    {
        icaltriggertype trigger;
        bool isFromEnd = false;
    };

    std::string kind; // "VEVENT"
    EventDraft draft; // what it says whatever else the calendar holds, without its times
    // Only of an event.
    std::string uid;     // the draft's may be another
    std::string version; // a higher one is newer: by the number that a change raises, then by the time of the change
    icaltimetype start{};
    icaltimetype end{};
    std::string zone; // the name of the start's, as the file has it
    std::optional<Occurrence> occurrence;
    std::vector<icaltimetype> exceptions;
    std::optional<Alarm> alarm;
    std::vector<Note> losses; // what a handset has no place for

    bool IsEvent() const { return kind == "VEVENT"; }
    bool IsForAllLater() const { return occurrence && occurrence->isForAllLater; }
};

Component ReadComponent(icalcomponent* component, const Assembly& assembly);

// The events of one id.
struct Family
{
    const Component* newest = nullptr;       // of those that are no instance
    const Component* series = nullptr;       // that, if it repeats
    std::vector<const Component*> instances; // by the occurrence that they take the place of

    // Does the series go on with it, with other values?
    bool IsChange(const Component& event) const { return series && event.IsForAllLater(); }
};

} // namespace phnctl
