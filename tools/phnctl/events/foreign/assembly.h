// Another program's calendar as libical's components, built line by line: so each property is known by its line, a
// calendar that ends early keeps what is whole, and libical sees nothing but well-formed text in UTF-8, about which it
// prints no complaints. What a line says in vain becomes a note.
#pragma once

#include "phnctl/events/event.h"
#include "phnctl/events/foreign/libical.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace phnctl {

struct ComponentDeleter
{
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};
using ComponentOwner = std::unique_ptr<icalcomponent, ComponentDeleter>;

struct Assembly
{
    // What is known of a component beside what libical holds.
    struct Origin
    {
        std::string kind; // "VEVENT"
        std::size_t line = 0;
        std::map<std::string, std::size_t> lines; // of each property, the first
        std::vector<std::string> rules;           // as they are written: libical drops what it does not take
        std::string zone;                         // of the start, as the file calls it
        std::vector<Note> notes;
    };

    ComponentOwner root;
    std::map<const icalcomponent*, Origin> origins;
    std::vector<EventDraft> broken; // events without an end, and a calendar without one
};

// Text in any character set.
Assembly Assemble(std::string_view text);

} // namespace phnctl
