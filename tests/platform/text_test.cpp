// Conversion between code pages and UTF-16: texts, lengths and errors.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include <windows.h>

using Units = std::vector<unsigned>;

constexpr UINT kPc = 437; // has pictures for control codes on every system
constexpr UINT kJapanese = 932;

TEST(Text, IsDecoded)
{
    const std::tuple<UINT, DWORD, std::string, Units> table[] = {
        {1252, MB_PRECOMPOSED, "a\xE9\x80", {'a', 0xE9, 0x20AC}},
        {1252, MB_PRECOMPOSED, "\x81\x8D", {0x81, 0x8D}}, // undefined bytes pass
        {kPc, MB_USEGLYPHCHARS, "\x01\x1F\x7F~\x81", {0x263A, 0x25BC, 0x2302, '~', 0xFC}},
        {kPc, MB_PRECOMPOSED, "\x01\x0D\x7F", {0x01, 0x0D, 0x7F}},
        {kJapanese, MB_PRECOMPOSED, "\x83\x41\x42\xB1", {0x30A2, 'B', 0xFF71}},
        {CP_UTF8, 0, "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", {0xE9, 0x20AC, 0xD83D, 0xDE00}},
        {CP_UTF8, 0, "\xC3(", {0xFFFD, '('}},
    };
    for (const auto& [codePage, flags, bytes, expected] : table) {
        WCHAR units[16];
        const int length =
            MultiByteToWideChar(codePage, flags, bytes.data(), static_cast<int>(bytes.size()), units, 16);
        EXPECT_EQ(Units(units, units + length), expected) << codePage << ' ' << bytes;
    }
}

TEST(Text, IsEncodedWithTheDefaultCharacterForWhatTheCodePageLacks)
{
    const std::tuple<UINT, std::vector<WCHAR>, const char*, bool> table[] = {
        {1252, {'a', 0xE9, 0x20AC, 0x81}, "a\xE9\x80\x81", false},
        {1252, {0x4E2D, 'x', 0xD83D, 0xDE00, 0xDE00}, "?x???", true},
        {1252, {'x', 0xDB40, 0xDC41, 0xDB40, 0xDC7F, 'y'}, "x????y", true}, // tags, as of a flag
        {kJapanese, {0x30A2, 'B'}, "\x83\x41\x42", false},
        {CP_UTF8, {0xD83D, 0xDE00, 0xDE00}, "\xF0\x9F\x98\x80\xEF\xBF\xBD", false},
    };
    for (const auto& [codePage, units, expected, isReplaced] : table) {
        char bytes[16];
        BOOL replaced = FALSE;
        const int length = WideCharToMultiByte(codePage, 0, units.data(), static_cast<int>(units.size()), bytes, 16,
                                               nullptr, codePage == CP_UTF8 ? nullptr : &replaced);
        EXPECT_EQ(std::string(bytes, static_cast<std::size_t>(length)), expected) << codePage;
        EXPECT_EQ(replaced != FALSE, isReplaced) << expected;
    }
}

TEST(Text, LengthsAreCheckedAndAskedFor)
{
    WCHAR units[4] = {'a', 'b', 'c', 'd'};
    EXPECT_EQ(MultiByteToWideChar(1252, 0, "abc", -1, nullptr, 0), 4); // with the terminator
    EXPECT_EQ(MultiByteToWideChar(1252, 0, "abc", 3, nullptr, 0), 3);
    const auto refused = [](int length, DWORD error) {
        EXPECT_EQ(GetLastError(), error);
        EXPECT_EQ(length, 0);
    };
    char bytes[2];
    refused(MultiByteToWideChar(1252, 0, "abc", -1, units, 3), ERROR_INSUFFICIENT_BUFFER);
    refused(WideCharToMultiByte(1252, 0, units, 3, bytes, 2, nullptr, nullptr), ERROR_INSUFFICIENT_BUFFER);
}
