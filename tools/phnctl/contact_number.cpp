#include "phnctl/contact_number.h"

#include "phnctl/content_line.h"
#include "phnctl/text.h"

#include <algorithm>
#include <iterator>

namespace phnctl {

namespace {

constexpr const char* kDigits = "0123456789";

// What a person writes into a number for the eye, the marks of text direction that address books add included.
bool IsDecoration(std::string_view character)
{
    constexpr std::string_view kMarks[] = {" ",      "-",      "(",      ")",      ".",      "/",
                                           "\t",     "_",      "\u00A0", "\u2010", "\u2011", "\u2012",
                                           "\u2013", "\u2009", "\u202F", "\u200E", "\u200F", "\u202A",
                                           "\u202C", "\u202D", "\u2066", "\u2068", "\u2069"};
    return std::find(std::begin(kMarks), std::end(kMarks), character) != std::end(kMarks);
}

} // namespace

WrittenNumber SplitExtension(const std::string& text)
{
    const std::string upper = UpperCase(text);
    for (const std::string_view mark : {"EXTENSION", "EXT", "X"}) {
        const std::size_t at = upper.rfind(mark);
        const std::size_t head = at == std::string::npos ? at : text.substr(0, at).find_last_of(kDigits);
        if (head == std::string::npos)
            continue;
        const std::size_t begin = upper.find_first_not_of(" .:=#", at + mark.size());
        const std::size_t end = upper.find_last_not_of(" )");
        if (begin > end || upper.find_first_not_of(kDigits, begin) <= end)
            continue;
        return {text.substr(0, text.find_last_not_of(" ;,(", at - 1) + 1), text.substr(begin, end - begin + 1)};
    }
    return {text, ""};
}

std::optional<std::string> Dialable(std::string_view text)
{
    std::string number;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = CharacterLength(text.substr(i));
        const char c = text[i];
        if ((c >= '0' && c <= '9') || c == '#' || c == '*' || c == '+')
            number += c;
        else if (c == 'p' || c == 'P' || c == ',')
            number += 'p';
        else if (c == 'w' || c == 'W' || c == ';')
            number += 'w';
        else if (!IsDecoration(text.substr(i, length)))
            return std::nullopt;
        i += length;
    }
    return number;
}

} // namespace phnctl
