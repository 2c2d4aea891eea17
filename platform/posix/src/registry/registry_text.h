// The encodings of registry files, which are the usual ones of .reg files: the code page's, or what a byte order mark
// says. Used where such a file is read.
#pragma once

#include <string>
#include <string_view>

namespace platform {

// In the system's ANSI code page. Half a unit at the end is left out.
std::string AnsiFromUtf16(std::string_view littleEndian);

// A file's text in the system's ANSI code page, by its byte order mark: UTF-16 little-endian, UTF-8, or as it is.
std::string AnsiText(std::string bytes);

} // namespace platform
