#include "phnctl/contacts/number.h"

#include "phnctl/text/content_line.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace phnctl {

namespace {

constexpr const char* kDigits = "0123456789";

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// What a person writes into a number for the eye, the marks of text direction that address books add included.
bool IsDecoration(std::string_view character)
{
    constexpr std::string_view kMarks[] = {" ",      "-",      "(",      ")",      ".",      "/",
                                           "\t",     "_",      "\u00A0", "\u2010", "\u2011", "\u2012",
                                           "\u2013", "\u2009", "\u202F", "\u200E", "\u200F", "\u202A",
                                           "\u202C", "\u202D", "\u2066", "\u2068", "\u2069"};
    return std::find(std::begin(kMarks), std::end(kMarks), character) != std::end(kMarks);
}

std::optional<std::string> Dialable(std::string_view text)
{
    std::string number;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = CharacterLength(text.substr(i));
        const char c = text[i];
        if (IsDigit(c) || c == '#' || c == '*' || c == '+')
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

// The extension as what is dialled after a pause.
std::string WithExtensionAfterPause(const std::string& text)
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
        return text.substr(0, text.find_last_not_of(" ;,(", at - 1) + 1) + 'p' + text.substr(begin, end - begin + 1);
    }
    return text;
}

bool IsInternational(const std::string& text)
{
    const std::string digits = Dialable(text).value_or("");
    return digits.starts_with('+') || digits.starts_with("00");
}

// Without a remark in brackets behind the number: "(mobile)".
std::string WithoutRemark(const std::string& text)
{
    const std::size_t open = text.rfind('(');
    const std::size_t last = text.find_last_not_of(' ');
    const bool isRemark = open != std::string::npos && text[last] == ')' &&
                          text.find_first_of(kDigits, open) == std::string::npos &&
                          text.substr(0, open).find_first_of(kDigits) != std::string::npos;
    return isRemark ? text.substr(0, open) : text;
}

// True when the digits before a slash are a whole number, and not an area code alone: with a country's code it takes
// more of them. Nobody's number has two digits, so that those behind a slash are another ending.
bool IsWholeNumber(const std::string& before, const std::string& behind)
{
    const auto count = [](const std::string& text) { return std::ranges::count_if(text, IsDigit); };
    return count(before) >= (IsInternational(before) ? 11 : 7) || (count(before) >= 5 && count(behind) <= 2);
}

} // namespace

std::optional<std::string> NumberOf(const std::string& text)
{
    std::string left = WithExtensionAfterPause(WithoutRemark(text));
    if (const std::size_t trunk = left.find("(0)");
        trunk != std::string::npos && IsInternational(left.substr(0, trunk)))
        left.erase(trunk, 3);
    for (std::size_t slash = left.rfind('/'); slash != std::string::npos; slash = left.rfind('/', slash - 1)) {
        if (IsWholeNumber(left.substr(0, slash), left.substr(slash + 1)))
            left.erase(slash);
        if (slash == 0)
            break;
    }
    return Dialable(left);
}

bool IsRewritten(const std::string& text, const std::string& number)
{
    return number != text && (Dialable(text) != number || number.find_first_of("pw") != std::string::npos ||
                              number.find_last_of('+') + 1 > 1);
}

} // namespace phnctl
