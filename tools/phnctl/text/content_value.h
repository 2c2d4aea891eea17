// What the value of a content line says: transfer encodings, character sets and escapes of vCard 2.1 to 4.0 and of
// iCalendar. Used by whoever gives a meaning to such lines. Values are hostile and become UTF-8, whatever they hold.
#pragma once

#include "phnctl/text/content_line.h"

#include <string>
#include <string_view>
#include <vector>

namespace phnctl {

// The value as UTF-8: quoted-printable and the CHARSET parameter are decoded; bytes that are no UTF-8 and name no
// character set are taken for the code page, or for Windows-1252 where that is UTF-8.
std::string DecodedValue(const ContentLine& line);
// True when the bytes were taken so; what to tell a person of it, beside what was read.
bool IsCharsetGuessed(const ContentLine& line);
std::string GuessedCharset(const std::string& value);

// Bytes that name no character set as UTF-8, in the same way.
std::string Utf8Of(const std::string& bytes);

// Splits at a separator that is not escaped, and resolves the escapes \n \, \; \: \\ in each part.
std::vector<std::string> SplitEscaped(std::string_view text, char separator);
std::string Unescaped(std::string_view text);
// The reverse, for text of version 3.0 and later, on one line whatever the text holds: control characters that have no
// escape become visible, as \xNN.
std::string Escaped(std::string_view text);

} // namespace phnctl
