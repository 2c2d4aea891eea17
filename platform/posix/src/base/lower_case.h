// Names that Windows finds without regard to case.
#pragma once

#include <string>
#include <string_view>

namespace platform {

// ASCII letters only: other bytes belong to a code page.
std::string LowerCase(std::string_view text);

} // namespace platform
