// Text of a handset's or a host's as a log line may hold it: it forges no line, and steers no terminal that shows the
// log. For log.cpp alone.
#pragma once

#include <string>
#include <string_view>

// The text with the bytes of its control characters, of those that reverse or hide the text around them, and of what is
// no character at all, written as "\x0D". Of a code page with characters of two bytes, all above ASCII stay.
std::string ShowControls(std::string_view strText);
