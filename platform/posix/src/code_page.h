// A code page's two conversions, through the C library's iconv and linear in their text whatever the bytes. What cannot
// be converted is replaced byte by byte or unit by unit, so that the rest of the text stays. Used by the text calls.
#pragma once

#include <iconv.h>

#include <bitset>
#include <mutex>
#include <string>
#include <string_view>

#include <windows.h>

namespace platform {

class CodePage
{
public:
    // The code page of this number, kept from its first use on; null if iconv does not know it.
    static CodePage* Find(UINT number);

    // The number of the system's ANSI code page (PHNNRV_ANSI_CODE_PAGE).
    static UINT Ansi();

    // Both put a character of their own for what means nothing.
    std::u16string Decode(std::string_view bytes);
    std::string Encode(std::u16string_view units, bool* replaced = nullptr);

private:
    CodePage(UINT number, iconv_t decoder, iconv_t encoder);

    void FindUndefinedBytes();
    bool MapsAscii();

    const UINT number_;
    std::mutex mutex_; // a leaf; the converters have a state
    iconv_t decoder_;
    iconv_t encoder_;
    std::bitset<256> passed_; // bytes of a single-byte code page that mean nothing and stand for their own value
    bool isAscii_ = false;    // each code below 0x80 is one byte of the same value, both ways
};

} // namespace platform
