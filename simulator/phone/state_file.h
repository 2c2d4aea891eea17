// The handset's memory as JSON that a person can read and edit (docs/protocol.md says what the values mean).
// Used by Handset. The JSON library stays behind this header, because it costs seconds per file that includes it.
#pragma once

#include "simulator/phone/phone.h"

#include <string>
#include <string_view>

namespace simulator {

// Both throw std::invalid_argument with the place ("contacts/3/ringer") and what is wrong there: a name that is
// unknown, a number that does not fit, a value of another kind. What `text` leaves out stays as it is in `base`; a
// store (contacts, events, messages, calls, groups, pictures, ringers) that it names is replaced as a whole.
Phone PhoneFromJson(std::string_view text, const Phone& base);
Phone WithValue(const Phone& phone, std::string_view path, std::string_view value);

// The whole state, or the part at `path` ("battery/battery2"). Throws std::invalid_argument when there is none.
std::string PhoneToJson(const Phone& phone, std::string_view path = {});

} // namespace simulator
