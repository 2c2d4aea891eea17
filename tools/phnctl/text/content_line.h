// Reads the line form that vCard and iCalendar files share (RFC 6350 section 3.2, RFC 5545 section 3.1): folded lines
// are joined and taken apart into group, name, parameters and value. It takes what other programs really write: any
// line end, bare parameters of vCard 2.1, quoted-printable text that goes on over soft line breaks. Files are hostile:
// nothing is trusted, nothing throws, and the work is linear in the text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace phnctl {

struct ContentLine
{
    struct Parameter
    {
        std::string name; // upper case; a bare encoding is an ENCODING, any other bare value a TYPE
        std::string value;
    };

    std::size_t line = 0;              // where it begins, from 1
    std::string group;                 // upper case; "ITEM1" of item1.TEL; mostly empty
    std::string name;                  // upper case, without its group; empty when the line has no colon
    std::vector<Parameter> parameters; // one for each value of a list
    std::string value;                 // joined, not decoded

    bool HasParameter(std::string_view parameter, std::string_view upperCaseValue) const;
    // In any case; empty when there is none.
    std::string ParameterValue(std::string_view parameter) const;
};

class ContentLineReader
{
public:
    explicit ContentLineReader(std::string_view text) : m_rest(text) {}

    // The next line that is not empty; false at the end.
    bool Next(ContentLine& line);

private:
    std::string_view TakePhysicalLine();
    bool ContinuesFolded() const { return m_rest.starts_with(' ') || m_rest.starts_with('\t'); }
    std::string Join(std::string_view first);

    std::string_view m_rest;
    std::size_t m_line = 0;
    bool m_keepsFoldingSpace = false; // vCard 2.1 folds where a space belongs to the text
};

std::string UpperCase(std::string_view text);

// Writes such a line: folded at 75 bytes, between characters, with its end.
void AppendFolded(std::string& text, std::string_view line);

} // namespace phnctl
