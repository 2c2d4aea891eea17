#include "phnctl/text/text.h"

#include "phnctl/text/failure.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fmt/format.h>
#include <sstream>
#include <utility>
#include <vector>
#include <windows.h>

namespace phnctl {

namespace {

// A conversion gives nothing for nothing only.
std::size_t Converted(int length)
{
    if (length <= 0)
        throw Failure(kRefused, fmt::format("a text cannot be converted: error {}", GetLastError()));
    return static_cast<std::size_t>(length);
}

std::vector<WCHAR> Widen(unsigned codePage, std::string_view text)
{
    if (text.empty())
        return {};
    const int length = static_cast<int>(text.size());
    std::vector<WCHAR> wide(Converted(MultiByteToWideChar(codePage, 0, text.data(), length, nullptr, 0)));
    Converted(MultiByteToWideChar(codePage, 0, text.data(), length, wide.data(), static_cast<int>(wide.size())));
    return wide;
}

std::string Narrow(unsigned codePage, const std::vector<WCHAR>& wide, BOOL* replaced)
{
    if (wide.empty())
        return {};
    const int length = static_cast<int>(wide.size());
    std::string text(Converted(WideCharToMultiByte(codePage, 0, wide.data(), length, nullptr, 0, nullptr, nullptr)),
                     '\0');
    Converted(WideCharToMultiByte(codePage, 0, wide.data(), length, text.data(), static_cast<int>(text.size()), nullptr,
                                  replaced));
    return text;
}

struct Character
{
    unsigned code = 0;
    std::size_t length = 0; // 0: no UTF-8
};

// The first character, by the table of RFC 3629, section 4: shortest form only, no surrogates.
Character FirstCharacter(std::string_view text)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    if (lead < 0x80)
        return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length)
        return {};
    unsigned code = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return {};
        code = code << 6 | (byte(i) & 0x3F);
    }
    constexpr unsigned kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (code < kSmallest[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return {};
    return {code, length};
}

bool IsControl(unsigned code)
{
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

// Control characters, and those that reverse or hide the text around them.
bool IsUnsafe(unsigned code)
{
    constexpr std::pair<unsigned, unsigned> kFormats[] = {
        {0xAD, 0xAD},     {0x61C, 0x61C},   {0x180E, 0x180E}, {0x200B, 0x200F},   {0x2028, 0x202E},
        {0x2060, 0x206F}, {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F},
    };
    return IsControl(code) || std::ranges::any_of(kFormats, [&](const auto& range) {
               return range.first <= code && code <= range.second;
           });
}

// How many bytes of ASCII it begins with.
std::size_t AsciiLength(std::string_view text)
{
    std::size_t length = 0;
    for (std::uint64_t bytes = 0; length + sizeof bytes <= text.size(); length += sizeof bytes) {
        std::memcpy(&bytes, text.data() + length, sizeof bytes);
        if (bytes & 0x8080808080808080)
            break;
    }
    while (length < text.size() && static_cast<unsigned char>(text[length]) < 0x80)
        ++length;
    return length;
}

bool IsPlain(char c)
{
    return c >= 0x20 && c < 0x7F;
}

// Each character as it is, or as `shown` has it, which is asked for all but the printable ones of ASCII.
template <class Shown>
std::string Replaced(std::string_view text, Shown shown)
{
    std::string result;
    for (;;) {
        const auto plainEnd = std::ranges::find_if_not(text, IsPlain);
        result.append(text.begin(), plainEnd);
        text = {plainEnd, text.end()};
        if (text.empty())
            return result;
        const Character character = FirstCharacter(text);
        const std::size_t length = character.length ? character.length : 1;
        result += shown(character, text.substr(0, length));
        text.remove_prefix(length);
    }
}

std::string ByteMark(unsigned byte)
{
    return fmt::format("\\x{:02X}", byte);
}

} // namespace

std::string FromHandset(std::string_view text)
{
    return FromCodePage(CP_ACP, text);
}

bool CodePageHoldsAll()
{
    return GetACP() == CP_UTF8;
}

std::string FromCodePage(unsigned codePage, std::string_view text)
{
    if ((codePage == CP_ACP ? GetACP() : codePage) == CP_UTF8 && IsUtf8(text))
        return std::string(text);
    return Narrow(CP_UTF8, Widen(codePage, text), nullptr);
}

std::string FromUtf16(std::string_view bytes, bool isBigEndian)
{
    std::vector<WCHAR> wide(bytes.size() / 2);
    for (std::size_t i = 0; i < wide.size(); ++i) {
        const auto first = static_cast<unsigned char>(bytes[2 * i]);
        const auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
        wide[i] = static_cast<WCHAR>(isBigEndian ? first << 8 | second : second << 8 | first);
    }
    return Narrow(CP_UTF8, wide, nullptr);
}

std::size_t CharacterLength(std::string_view text)
{
    const std::size_t length = FirstCharacter(text).length;
    return length ? length : 1;
}

bool IsUtf8(std::string_view text)
{
    for (;;) {
        text.remove_prefix(AsciiLength(text));
        if (text.empty())
            return true;
        const Character character = FirstCharacter(text);
        if (character.length == 0)
            return false;
        text.remove_prefix(character.length);
    }
}

std::optional<std::string> TryToHandset(const std::string& text)
{
    BOOL replaced = FALSE;
    std::string result = Narrow(CP_ACP, Widen(CP_UTF8, text), &replaced);
    return replaced || FromHandset(result) != text ? std::nullopt : std::optional(result);
}

std::string ToHandset(const std::string& text)
{
    if (auto result = TryToHandset(text))
        return *result;
    throw Failure(kUsage,
                  fmt::format("'{}' holds characters that have no place in code page {}", Printable(text), GetACP()));
}

std::string WithoutControls(std::string_view text)
{
    return Replaced(text, [](const Character& character, std::string_view bytes) {
        return std::string(character.length && IsControl(character.code) ? " " : bytes);
    });
}

bool HasControls(std::string_view text)
{
    return WithoutControls(text) != text;
}

std::string Printable(std::string_view text)
{
    return Replaced(text, [](const Character& character, std::string_view bytes) {
        if (character.length == 0)
            return ByteMark(static_cast<unsigned char>(bytes[0]));
        if (!IsUnsafe(character.code))
            return std::string(bytes);
        return character.code < 0x100 ? ByteMark(character.code) : fmt::format("\\u{{{:04X}}}", character.code);
    });
}

std::string PrintableLines(const std::string& text)
{
    std::string printable;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        printable += Printable(std::string_view(line).substr(0, line.find_last_not_of('\r') + 1)) + '\n';
    return printable;
}

std::string PrintableJson(std::string_view json)
{
    return Replaced(json, [](const Character& character, std::string_view bytes) {
        if (!IsUnsafe(character.code))
            return std::string(bytes);
        std::string escaped;
        for (const WCHAR unit : Widen(CP_UTF8, bytes))
            escaped += fmt::format("\\u{:04x}", static_cast<unsigned>(unit));
        return escaped;
    });
}

std::string CutToUnits(const std::string& text, std::size_t units)
{
    std::size_t used = 0;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = CharacterLength(std::string_view(text).substr(i));
        used += length == 4 ? 2 : 1;
        if (used > units)
            return text.substr(0, i);
        i += length;
    }
    return text;
}

std::string VisibleControls(std::string_view text)
{
    const char* lineEnd = nullptr; // of a CR: it and an LF there are one line end
    return Replaced(text, [&](const Character& character, std::string_view bytes) -> std::string {
        const bool isSecond = character.code == '\n' && bytes.data() == lineEnd;
        lineEnd = character.code == '\r' ? bytes.data() + bytes.size() : nullptr;
        if (character.code == '\t' || character.code == '\n' || character.code == '\r')
            return isSecond ? "" : " ";
        return character.length && IsControl(character.code) ? ByteMark(character.code) : std::string(bytes);
    });
}

std::string OneLine(std::string_view value)
{
    std::string text = VisibleControls(value);
    text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

} // namespace phnctl
