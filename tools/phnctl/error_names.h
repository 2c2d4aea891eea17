// The library's own codes with their names and what they mean to a person. Used for every refusal that is shown; the
// texts of the network errors (1000 and up) are the library's, see Handset::NetworkErrorText.
#pragma once

#include "phnnrv.h"

#include <optional>
#include <string>

namespace phnctl {

// "203 PHN_ERROR_INVALID_LOCK_CODE: the lock code is wrong"; nothing for a code that is none of the library's own.
std::optional<std::string> OwnError(PHN_ERROR code);

// The same for every code.
std::string Explain(PHN_ERROR code);

} // namespace phnctl
