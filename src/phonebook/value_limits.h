// The limits of the vCard's property values. A value that does not fit makes the whole vCard be rejected, with an Error
// line of its own, because a cut telephone number is a wrong number. Used by both halves of the conversion.
#pragma once

#include <cstdint>
#include <string_view>

#include "phonebook/vcard_reader.h"

// False, logged, if a property's value is longer than the limit of all values.
bool FitsLimit(EVCardKey eKey, std::string_view strValue);

// The decimal value of an optional property; *pdwNumber stays as it is if the property is absent. False, logged, if the
// value is too long.
bool ReadNumber(const CVCardText& Text, EVCardKey eKey, uint32_t* pdwNumber);
