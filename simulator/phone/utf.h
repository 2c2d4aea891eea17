// UTF-8 (the state, files and traces) to UTF-16 (the handset's records) and back. What is not well formed becomes
// U+FFFD.
#pragma once

#include <string>
#include <string_view>

namespace simulator {

std::u16string ToUtf16(std::string_view text);
std::string ToUtf8(std::u16string_view units);

} // namespace simulator
