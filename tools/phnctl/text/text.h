// Text between the two worlds: the code page inside the library, UTF-8 outside. Used wherever handset text is shown or
// a typed text goes to the handset. Handset text is hostile: no control character of it reaches a terminal.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace phnctl {

// From the ANSI code page to UTF-8.
std::string FromHandset(std::string_view text);

// The same for a fixed-width field, which may be filled to its last byte without a terminating zero.
template <std::size_t Size>
std::string FromHandset(const char (&field)[Size])
{
    const std::string_view whole(field, Size);
    return FromHandset(whole.substr(0, whole.find('\0')));
}

// True where every character has a place in the ANSI code page: it is UTF-8.
bool CodePageHoldsAll();

// From UTF-8 to the ANSI code page. Throws Failure(kUsage) that names the text when it holds what has no place there.
std::string ToHandset(const std::string& text);

// The same, with nothing instead of a failure.
std::optional<std::string> TryToHandset(const std::string& text);

// From a code page, and from the bytes of UTF-16, to UTF-8. What means nothing there becomes the replacement character.
std::string FromCodePage(unsigned codePage, std::string_view text);
std::string FromUtf16(std::string_view bytes, bool isBigEndian);

// Bytes of the first character; 1 for a byte that is no UTF-8. The text must not be empty.
std::size_t CharacterLength(std::string_view text);

bool IsUtf8(std::string_view text);

// UTF-8 in which every control character is a space, so that it is one line.
std::string WithoutControls(std::string_view text);
bool HasControls(std::string_view text);

// The beginning of a text that is no more than so many units of UTF-16.
std::string CutToUnits(const std::string& text, std::size_t units);

// UTF-8 on one line: line ends and tabs become spaces, other control characters visible, as \xNN.
std::string VisibleControls(std::string_view text);

// What it has done to a text, for people.
inline constexpr const char* kControlsReplaced =
    "its control characters do not go over: line ends and tabs become spaces, others '\\xNN'";

// The same without spaces around it.
std::string OneLine(std::string_view value);

// UTF-8 made fit for a terminal: control characters, those that reverse or hide the text around them, and bytes that
// are no UTF-8, as \xNN or \u{NNNN}.
std::string Printable(std::string_view text);

// The same for a text of several lines.
std::string PrintableLines(const std::string& text);

// The same for text that is JSON already: as \uNNNN, which means the same to whoever reads it.
std::string PrintableJson(std::string_view json);

} // namespace phnctl
