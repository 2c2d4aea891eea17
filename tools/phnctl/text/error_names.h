// The library's codes with their names and what they mean to a person. Used for every refusal that is shown, and for
// the network errors (1000 and up) that tell why a call ended, whose texts the library has from the same source.
#pragma once

#include "phnctl/text/failure.h"

#include <optional>
#include <string>

namespace phnctl {

// Nothing for a code, or a name, that is none of the library's own.
std::optional<ErrorText> OwnError(PHN_ERROR code);
std::optional<ErrorText> OwnError(const std::string& name);

// The same for network errors alone.
std::optional<ErrorText> NetworkError(PHN_ERROR code);

// For every code: one that is none of the library's own is a code without a name.
ErrorText ErrorOf(PHN_ERROR code);

// ErrorOf as one text.
std::string Explain(PHN_ERROR code);

} // namespace phnctl
