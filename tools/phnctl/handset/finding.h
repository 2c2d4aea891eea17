// One thing that was looked at when a handset is searched for, in words. Made by those who look, shown by doctor.
#pragma once

#include <string>

namespace phnctl {

struct Finding
{
    std::string step;
    std::string state; // part of the JSON form: ok, note, missing, busy, no permission, unusable, failed
    std::string detail;
    std::string remedy; // the command that mends it; empty when nothing needs mending
};

} // namespace phnctl
