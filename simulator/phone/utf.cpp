#include "simulator/phone/utf.h"

#include <cstddef>
#include <cstdint>

namespace simulator {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsSurrogate(char32_t c)
{
    return c >= 0xD800 && c <= 0xDFFF;
}

// Takes one character from the front of `text`; of an ill-formed one, its first byte.
char32_t TakeUtf8(std::string_view& text)
{
    const auto first = static_cast<std::uint8_t>(text.front());
    text.remove_prefix(1);
    if (first < 0x80)
        return first;
    const std::size_t more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    if (first < 0xC2 || first > 0xF4 || text.size() < more)
        return kReplacement;
    char32_t c = first & (0x3Fu >> more);
    for (std::size_t i = 0; i < more; ++i) {
        const auto next = static_cast<std::uint8_t>(text[i]);
        if ((next & 0xC0) != 0x80)
            return kReplacement;
        c = c << 6 | (next & 0x3Fu);
    }
    constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
    if (c < kSmallest[more] || c > 0x10FFFF || IsSurrogate(c))
        return kReplacement;
    text.remove_prefix(more);
    return c;
}

void AppendUtf8(std::string& text, char32_t c)
{
    const auto append = [&](char32_t byte) { text.push_back(static_cast<char>(static_cast<std::uint8_t>(byte))); };
    if (c < 0x80)
        return append(c);
    if (c < 0x800) {
        append(0xC0 | c >> 6);
        return append(0x80 | (c & 0x3F));
    }
    if (c < 0x10000)
        append(0xE0 | c >> 12);
    else {
        append(0xF0 | c >> 18);
        append(0x80 | (c >> 12 & 0x3F));
    }
    append(0x80 | (c >> 6 & 0x3F));
    append(0x80 | (c & 0x3F));
}

} // namespace

std::u16string ToUtf16(std::string_view text)
{
    std::u16string units;
    while (!text.empty()) {
        char32_t c = TakeUtf8(text);
        if (c >= 0x10000) {
            c -= 0x10000;
            units.push_back(static_cast<char16_t>(0xD800 | c >> 10));
            c = 0xDC00 | (c & 0x3FF);
        }
        units.push_back(static_cast<char16_t>(c));
    }
    return units;
}

std::string ToUtf8(std::u16string_view units)
{
    std::string text;
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t c = units[i];
        const bool isPair =
            c >= 0xD800 && c < 0xDC00 && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] <= 0xDFFF;
        if (isPair)
            c = 0x10000 + ((c & 0x3FF) << 10) + (units[++i] & 0x3FFu);
        AppendUtf8(text, IsSurrogate(c) ? kReplacement : c);
    }
    return text;
}

} // namespace simulator
