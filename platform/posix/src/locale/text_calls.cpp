// Conversion between code pages and UTF-16, with the lengths and errors that callers go by.
#include <algorithm>
#include <climits>
#include <cstring>

#include "base/win32_call.h"
#include "locale/code_page.h"

using namespace platform;

namespace {

// The pictures that the codes 0x01 to 0x1F have on the PC's screen; 0x7F has U+2302.
constexpr char16_t kGlyphs[0x20] = {u'\0',  0x263A, 0x263B, 0x2665, 0x2666, 0x2663, 0x2660, 0x2022,
                                    0x25D8, 0x25CB, 0x25D9, 0x2642, 0x2640, 0x266A, 0x266B, 0x263C,
                                    0x25BA, 0x25C4, 0x2195, 0x203C, 0x00B6, 0x00A7, 0x25AC, 0x21A8,
                                    0x2191, 0x2193, 0x2192, 0x2190, 0x221F, 0x2194, 0x25B2, 0x25BC};

char16_t Glyph(char16_t unit)
{
    if (unit >= std::size(kGlyphs) && unit != 0x7F)
        return unit;
    return unit == 0x7F ? char16_t{0x2302} : kGlyphs[unit];
}

CodePage& PageOf(UINT number)
{
    CodePage* const page = CodePage::Find(number == CP_ACP ? CodePage::Ansi() : number);
    if (!page)
        throw Win32Error{ERROR_INVALID_PARAMETER};
    return *page;
}

void CheckBuffers(const void* from, int fromLength, const void* to, int toLength)
{
    if (!from || fromLength == 0 || fromLength < -1 || toLength < 0 || (toLength > 0 && (!to || to == from)))
        throw Win32Error{ERROR_INVALID_PARAMETER};
}

// A caller's text: its stated length, or up to and with the terminator for -1.
template <typename Unit>
std::basic_string_view<Unit> TextOf(const Unit* text, int length)
{
    return {text, length < 0 ? std::char_traits<Unit>::length(text) + 1 : static_cast<size_t>(length)};
}

// Copies the result, each unit as it is wanted, or as much as there is room for, and gives its length; a length of 0
// only asks for it.
template <typename Text, typename Unit, typename Wanted>
int Deliver(const Text& result, Unit* to, int length, Wanted wanted)
{
    if (result.size() > INT_MAX)
        throw Win32Error{ERROR_INVALID_PARAMETER};
    if (length == 0)
        return static_cast<int>(result.size());
    const size_t count = std::min(result.size(), static_cast<size_t>(length));
    std::transform(result.data(), result.data() + count, to, wanted);
    if (count < result.size())
        throw Win32Error{ERROR_INSUFFICIENT_BUFFER};
    return static_cast<int>(count);
}

} // namespace

UINT WINAPI GetACP()
{
    UINT number = 0;
    return ErrorOf([&] { number = CodePage::Ansi(); }) == ERROR_SUCCESS ? number : CodePage::kDefaultAnsi;
}

int WINAPI MultiByteToWideChar(UINT CodePage, DWORD dwFlags, LPCSTR lpMultiByteStr, int cbMultiByte,
                               LPWSTR lpWideCharStr, int cchWideChar)
{
    return Win32Call(Call::MultiByteToWideChar, 0, [&] {
        CheckBuffers(lpMultiByteStr, cbMultiByte, lpWideCharStr, cchWideChar);
        constexpr DWORD kKnown = MB_PRECOMPOSED | MB_USEGLYPHCHARS;
        if ((dwFlags & ~kKnown) || (CodePage == CP_UTF8 && dwFlags))
            throw Win32Error{ERROR_INVALID_FLAGS};
        const auto wanted = [hasGlyphs = (dwFlags & MB_USEGLYPHCHARS) != 0](auto unit) -> WCHAR {
            return hasGlyphs ? Glyph(static_cast<char16_t>(unit)) : static_cast<char16_t>(unit);
        };
        const std::string_view bytes = TextOf(lpMultiByteStr, cbMultiByte);
        auto& page = PageOf(CodePage);
        return page.IsPlain(bytes) ? Deliver(bytes, lpWideCharStr, cchWideChar, wanted)
                                   : Deliver(page.Decode(bytes), lpWideCharStr, cchWideChar, wanted);
    });
}

int WINAPI WideCharToMultiByte(UINT CodePage, DWORD dwFlags, LPCWSTR lpWideCharStr, int cchWideChar,
                               LPSTR lpMultiByteStr, int cbMultiByte, LPCSTR lpDefaultChar, LPBOOL lpUsedDefaultChar)
{
    return Win32Call(Call::WideCharToMultiByte, 0, [&] {
        CheckBuffers(lpWideCharStr, cchWideChar, lpMultiByteStr, cbMultiByte);
        if (CodePage == CP_UTF8 && lpUsedDefaultChar)
            throw Win32Error{ERROR_INVALID_PARAMETER};
        if (dwFlags)
            throw Win32Error{ERROR_INVALID_FLAGS};
        if (lpDefaultChar)
            throw Win32Error{ERROR_NOT_SUPPORTED};
        const auto wanted = [](auto unit) { return static_cast<char>(unit); };
        const std::u16string_view units = TextOf(lpWideCharStr, cchWideChar);
        auto& page = PageOf(CodePage);
        bool replaced = false;
        if (lpUsedDefaultChar)
            *lpUsedDefaultChar = FALSE;
        if (page.IsPlain(units))
            return Deliver(units, lpMultiByteStr, cbMultiByte, wanted);
        const std::string bytes = page.Encode(units, &replaced);
        if (lpUsedDefaultChar)
            *lpUsedDefaultChar = replaced ? TRUE : FALSE;
        return Deliver(bytes, lpMultiByteStr, cbMultiByte, wanted);
    });
}
