// The library's own codes with their names and what they mean to a person. Used for every refusal that is shown; the
// texts of the network errors (1000 and up) are the library's, see Handset::NetworkError.
#pragma once

#include "phnctl/text/failure.h"

#include <optional>
#include <string>

namespace phnctl {

// Nothing for a code, or a name, that is none of the library's own.
std::optional<ErrorText> OwnError(PHN_ERROR code);
std::optional<ErrorText> OwnError(const std::string& name);

// For every code: one that is none of the library's own is a code without a name.
ErrorText ErrorOf(PHN_ERROR code);

// ErrorOf as one text.
std::string Explain(PHN_ERROR code);

} // namespace phnctl
