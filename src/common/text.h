// The two code-page conversions between the handset's UTF-16 and the host's 8-bit text in the system's ANSI code page.
// Every service uses these and no other. Time is linear in the text; no text is taken to be terminated. A conversion
// that the system fails, for want of memory for example, throws CTextError: no text is taken for an empty one.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

class CTextError : public std::runtime_error
{
public:
    CTextError() : std::runtime_error("text conversion failed") {}
};

// Precomposed characters, control codes as glyphs. Bytes that are no character become the code page's substitute.
std::u16string ToWide(std::string_view strText);

// Characters that the code page lacks become its default replacement character.
std::string ToAnsi(std::u16string_view strText);

// The same, behind what the other text holds.
void AppendAnsi(std::u16string_view strText, std::string* pstrAnsi);

// As much of the text's beginning as has at most uLimit bytes; whole characters only.
std::string ToAnsi(std::u16string_view strText, size_t uLimit);
