// A code page's two conversions, through the C library's iconv and linear in their text whatever the bytes. What cannot
// be converted is replaced byte by byte or unit by unit, so that the rest of the text stays. What single units and
// bytes give is found once: the text of most of Europe needs no more. Used by the text calls.
#pragma once

#include <iconv.h>

#include <array>
#include <atomic>
#include <bitset>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <windows.h>

namespace platform {

// One direction of iconv; false if iconv does not know the code page. Throws if there is no memory for it.
class Converter
{
public:
    Converter(const char* to, const char* from);
    Converter(Converter&& other) noexcept : converter_(std::exchange(other.converter_, kNone)) {}
    Converter& operator=(Converter&&) = delete;
    ~Converter();

    explicit operator bool() const { return converter_ != kNone; }

    // Appends to the output what the input gives, as far as it can be converted; returns how much of the input that
    // was.
    size_t Convert(std::string_view input, std::string& output);
    // Appends what the converter still holds, and brings it to its first state.
    void Flush(std::string& output);

private:
    static inline const iconv_t kNone = reinterpret_cast<iconv_t>(std::intptr_t{-1});

    iconv_t converter_;
};

class CodePage
{
public:
    // The code page of this number, kept from its first use on; null if iconv does not know it.
    static CodePage* Find(UINT number);

    static constexpr UINT kDefaultAnsi = 1252;

    // The number of the system's ANSI code page (PHNNRV_ANSI_CODE_PAGE when it is first asked for); never 0.
    static UINT Ansi();
    static void ForgetAnsi();

    // Whether each unit is one byte of the same value, which needs no conversion: so are most texts.
    template <typename Text>
    bool IsPlain(const Text& text) const
    {
        unsigned all = 0;
        for (const auto unit : text)
            all |= static_cast<std::make_unsigned_t<typename Text::value_type>>(unit);
        return isAscii_ && all < 0x80;
    }

    // Both put a character of their own for what means nothing.
    std::u16string Decode(std::string_view bytes);
    std::string Encode(std::u16string_view units, bool* replaced = nullptr);

private:
    CodePage(UINT number, Converter decoder, Converter encoder);

    static CodePage* FindKnown(UINT number);
    static UINT NamedAnsi();
    void FindBytes();
    void FindUnits();
    bool MapsAscii() const;
    bool IsFound(std::u16string_view units) const;

    static inline std::atomic<UINT> ansi_ = 0; // 0: not yet asked for

    const UINT number_;
    std::mutex mutex_; // a leaf; the converters have a state
    Converter decoder_;
    Converter encoder_;
    std::array<char16_t, 256> decoded_{};    // by the byte, if each means one unit whatever stands beside it
    bool isSingleByte_ = true;               // they do
    std::bitset<256> passed_;                // bytes that mean nothing and stand for their own value
    std::array<std::string, 256> encoded_{}; // by the unit; empty: the code page lacks it
    bool isAscii_ = false;                   // each code below 0x80 is one byte of the same value, both ways
};

} // namespace platform
