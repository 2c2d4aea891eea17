// Turns what somebody wants to store in a contact, any number of values of any length, into what a contact of the
// handset holds, and says what does not fit. Used by the contact kind, for the cards of files and for the handset's own
// contacts alike, so that both are compared in one form.
#pragma once

#include "phnctl/plan/entry.h"

#include <string>
#include <vector>

namespace phnctl {

// One value that a contact should get.
struct Wish
{
    std::string property; // one of contact_property
    std::string value;    // UTF-8
    std::string source;   // what the file calls it
    std::size_t line = 0;
    bool isPreferred = false; // to be the default number
};

// An entry of what fits; what does not is noted. `fits` is false when nothing can be stored: the last note says why.
Candidate FitContact(const std::vector<Wish>& wishes);

// What the handset would hold if a contact that was read were written back: the form in which contacts are compared.
Entry StorableContact(const Entry& read);

} // namespace phnctl
