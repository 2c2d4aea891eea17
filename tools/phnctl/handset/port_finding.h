// What can be seen of a port without asking on it, in words. Used by doctor for every port, and by the session to say
// why a search found nothing.
#pragma once

#include "phnctl/handset/surroundings.h"
#include "system/system.h"

#include <string>
#include <vector>

namespace phnctl {

struct PortFinding
{
    std::string name;
    std::string state;        // ok, busy, no permission, unusable
    std::string detail;       // "com5, serial port -> /dev/pts/3: another program uses it: minicom (pid 812)"
    std::string remedy;       // the command that mends it; empty when nothing needs mending
    std::string holders;      // "minicom (pid 812)"; empty: nobody, as far as can be seen
    bool isAsked = false;     // free, and one that the library looks at
    bool isBusy = false;      // in use, and one that the library would look at
    bool isThisTools = false; // in use by another phnctl, which is waited for
};

std::vector<PortFinding> LookAtPorts(const std::vector<PortEntry>& entries);

// What is said of asked ports on which no handset has answered: "com5 is there, but did not answer".
std::string Unanswered(const std::vector<PortFinding>& ports);

// "minicom (pid 812), a program (pid 815)"
std::string Names(const std::vector<host::Process>& processes);

// Who has the ports that are busy: "com5 is in use by phnctl (pid 812)"; empty when none is.
std::string InUse(const std::vector<PortFinding>& ports);

extern const char* const kUnansweredRemedy;

} // namespace phnctl
