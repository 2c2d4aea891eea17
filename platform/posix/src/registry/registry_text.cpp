#include "registry/registry_text.h"

#include <cstring>

#include "locale/code_page.h"

namespace platform {
namespace {

std::string Ansi(std::u16string_view units)
{
    CodePage* const page = CodePage::Find(CodePage::Ansi());
    return page ? page->Encode(units) : std::string();
}

} // namespace

std::string AnsiFromUtf16(std::string_view littleEndian)
{
    std::u16string units(littleEndian.size() / sizeof(char16_t), u'\0');
    std::memcpy(units.data(), littleEndian.data(), units.size() * sizeof(char16_t));
    return Ansi(units);
}

std::string AnsiText(std::string bytes)
{
    constexpr std::string_view kUtf16Mark = "\xFF\xFE";
    constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
    const std::string_view text = bytes;
    if (text.starts_with(kUtf16Mark))
        return AnsiFromUtf16(text.substr(kUtf16Mark.size()));
    if (text.starts_with(kUtf8Mark))
        return Ansi(CodePage::Find(CP_UTF8)->Decode(text.substr(kUtf8Mark.size())));
    return bytes;
}

} // namespace platform
