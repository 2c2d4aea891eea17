// Takes out of a report's texts what tells who sends it.
#pragma once

#include <string>

namespace phnctl {

// The home folder becomes ~, and the instance in the name of a USB interface, often the handset's serial number, "...".
std::string Scrubbed(const std::string& text);

} // namespace phnctl
