#include "phnctl/text/content_value.h"

#include "phnctl/text/number.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <optional>

namespace phnctl {

namespace {

constexpr unsigned kWestern = 1252;

std::optional<unsigned char> HexByte(std::string_view text)
{
    const auto digit = [](char c) {
        return c >= '0' && c <= '9' ? c - '0' : (c | 0x20) >= 'a' && (c | 0x20) <= 'f' ? (c | 0x20) - 'a' + 10 : -1;
    };
    if (text.size() < 2 || digit(text[0]) < 0 || digit(text[1]) < 0)
        return std::nullopt;
    return static_cast<unsigned char>(digit(text[0]) << 4 | digit(text[1]));
}

std::string DecodeQuotedPrintable(std::string_view text)
{
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = text[i] == '=' ? HexByte(text.substr(i + 1)) : std::nullopt;
        decoded += byte ? static_cast<char>(*byte) : text[i];
        i += byte ? 2 : 0;
    }
    return decoded;
}

// The Windows number of a character set's name; nothing for UTF-8 and for names that are not known.
std::optional<unsigned> CodePageOf(const std::string& charset)
{
    constexpr struct
    {
        std::string_view name;
        unsigned codePage;
    } kNames[] = {{"SHIFT_JIS", 932}, {"SHIFT-JIS", 932}, {"GB2312", 936},   {"GBK", 936},     {"GB18030", 54936},
                  {"EUC-KR", 949},    {"BIG5", 950},      {"KOI8-R", 20866}, {"KOI8-U", 21866}};
    const std::string upper = UpperCase(charset);
    for (const auto& known : kNames)
        if (upper == known.name)
            return known.codePage;
    const auto numbered = [&](std::string_view prefix, std::uint64_t largest) {
        return upper.starts_with(prefix) ? ParseNumber(std::string_view(upper).substr(prefix.size()), largest)
                                         : std::nullopt;
    };
    if (const auto part = numbered("ISO-8859-", 15); part && *part >= 1)
        return *part == 1 ? kWestern : 28590 + static_cast<unsigned>(*part); // as browsers do: it is what was meant
    if (const auto number = numbered("WINDOWS-", 1258); number && *number >= 1250)
        return static_cast<unsigned>(*number);
    return std::nullopt;
}

std::string BytesOf(const ContentLine& line)
{
    return line.HasParameter("ENCODING", "QUOTED-PRINTABLE") ? DecodeQuotedPrintable(line.value) : line.value;
}

// What divides values gets a backslash.
void AppendMasked(std::string& text, std::string_view value)
{
    for (;;) {
        const auto end = std::ranges::find_if(value, [](char c) { return c == ',' || c == ';' || c == '\\'; });
        text.append(value.begin(), end);
        if (end == value.end())
            return;
        text.append({'\\', *end});
        value = {end + 1, value.end()};
    }
}

} // namespace

bool IsCharsetGuessed(const ContentLine& line)
{
    return !CodePageOf(line.ParameterValue("CHARSET")) && !IsUtf8(BytesOf(line));
}

std::string GuessedCharset(const std::string& value)
{
    return fmt::format("the file names no character set and is not UTF-8; read as '{}'", value);
}

std::string Utf8Of(const std::string& bytes)
{
    if (IsUtf8(bytes))
        return bytes;
    return CodePageHoldsAll() ? FromCodePage(kWestern, bytes) : FromHandset(bytes);
}

std::string DecodedValue(const ContentLine& line)
{
    const std::string bytes = BytesOf(line);
    if (const auto codePage = CodePageOf(line.ParameterValue("CHARSET")))
        return FromCodePage(*codePage, bytes);
    return Utf8Of(bytes);
}

std::vector<std::string> SplitEscaped(std::string_view text, char separator)
{
    std::vector<std::string> parts(1);
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text[i] == '\\') {
            ++i;
        } else if (i == text.size() || text[i] == separator) {
            parts.back() = Unescaped(text.substr(begin, i - begin));
            begin = i + 1;
            if (i < text.size())
                parts.emplace_back();
        }
    }
    return parts;
}

std::string Unescaped(std::string_view text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char next = text[i] == '\\' && i + 1 < text.size() ? text[i + 1] : '\0';
        const bool isEscape = next != '\0' && std::string_view("nN,;:\\").find(next) != std::string_view::npos;
        plain += !isEscape ? text[i] : next == 'n' || next == 'N' ? '\n' : next;
        i += isEscape;
    }
    return plain;
}

std::string Escaped(std::string_view text)
{
    std::string escaped;
    for (;;) {
        const auto end = std::ranges::find_if(text, [](char c) { return c == '\r' || c == '\n'; });
        AppendMasked(escaped, VisibleControls({text.begin(), end}));
        if (end == text.end())
            return escaped;
        escaped += "\\n";
        text = {end, text.end()};
        text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
    }
}

} // namespace phnctl
