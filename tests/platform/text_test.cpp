// Conversion between code pages and UTF-16: texts, lengths and errors.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include <windows.h>

namespace {

using Units = std::vector<unsigned>;

constexpr UINT kPc = 437; // has pictures for control codes on every system
constexpr UINT kJapanese = 932;

Units Decode(UINT codePage, DWORD flags, const std::string& bytes)
{
    std::vector<WCHAR> units(bytes.size() + 1);
    const int length = MultiByteToWideChar(codePage, flags, bytes.data(), static_cast<int>(bytes.size()), units.data(),
                                           static_cast<int>(units.size()));
    return {units.begin(), units.begin() + length};
}

std::string Encode(UINT codePage, const Units& units, BOOL* replaced = nullptr)
{
    const std::vector<WCHAR> text(units.begin(), units.end());
    std::string bytes(4 * units.size(), '\0');
    const int length = WideCharToMultiByte(codePage, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                                           static_cast<int>(bytes.size()), nullptr, replaced);
    bytes.resize(static_cast<std::size_t>(length));
    return bytes;
}

TEST(Text, IsDecoded)
{
    const std::tuple<UINT, DWORD, const char*, Units> table[] = {
        {1252, MB_PRECOMPOSED, "a\xE9\x80", {'a', 0xE9, 0x20AC}},
        {1252, MB_PRECOMPOSED, "\x81\x8D", {0x81, 0x8D}}, // undefined bytes pass
        {kPc, MB_USEGLYPHCHARS, "\x01\x1F\x7F~\x81", {0x263A, 0x25BC, 0x2302, '~', 0xFC}},
        {kPc, MB_PRECOMPOSED, "\x01\x0D\x7F", {0x01, 0x0D, 0x7F}},
        {kJapanese, MB_PRECOMPOSED, "\x83\x41\x42\xB1", {0x30A2, 'B', 0xFF71}},
        {CP_UTF8, 0, "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", {0xE9, 0x20AC, 0xD83D, 0xDE00}},
    };
    for (const auto& [codePage, flags, bytes, expected] : table)
        EXPECT_EQ(Decode(codePage, flags, bytes), expected) << codePage << ' ' << bytes;
}

TEST(Text, IsEncodedWithTheDefaultCharacterForWhatTheCodePageLacks)
{
    BOOL replaced = FALSE;
    EXPECT_EQ(Encode(1252, {'a', 0xE9, 0x20AC, 0x81}, &replaced), "a\xE9\x80\x81");
    EXPECT_FALSE(replaced);
    EXPECT_EQ(Encode(1252, {0x4E2D, 'x', 0xD83D, 0xDE00, 0xDE00}, &replaced), "?x???");
    EXPECT_TRUE(replaced);
    EXPECT_EQ(Encode(kJapanese, {0x30A2, 'B'}), "\x83\x41\x42");
    EXPECT_EQ(Encode(CP_UTF8, {0xD83D, 0xDE00, 0xDE00}), "\xF0\x9F\x98\x80\xEF\xBF\xBD");
    const WCHAR text[] = {0x4E2D, 0};
    char bytes[4];
    EXPECT_EQ(WideCharToMultiByte(1252, 0, text, -1, bytes, sizeof bytes, "#", nullptr), 2);
    EXPECT_STREQ(bytes, "#");
}

TEST(Text, LengthsAreCheckedAndAskedFor)
{
    WCHAR units[4] = {'a', 'b', 'c', 'd'};
    EXPECT_EQ(MultiByteToWideChar(1252, 0, "abc", -1, nullptr, 0), 4); // with the terminator
    EXPECT_EQ(MultiByteToWideChar(1252, 0, "abc", 3, nullptr, 0), 3);
    EXPECT_EQ(MultiByteToWideChar(1252, 0, "abc", -1, units, 4), 4);
    EXPECT_EQ(units[3], WCHAR{});
    const auto refused = [](int length, DWORD error) {
        EXPECT_EQ(GetLastError(), error);
        EXPECT_EQ(length, 0);
    };
    char bytes[2];
    refused(MultiByteToWideChar(1252, 0, "abc", -1, units, 3), ERROR_INSUFFICIENT_BUFFER);
    refused(WideCharToMultiByte(1252, 0, units, 3, bytes, 2, nullptr, nullptr), ERROR_INSUFFICIENT_BUFFER);
    refused(MultiByteToWideChar(1252, 0, "abc", 0, units, 4), ERROR_INVALID_PARAMETER);
    refused(MultiByteToWideChar(64999, 0, "a", 1, units, 4), ERROR_INVALID_PARAMETER);
    refused(MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, "\xC3(", 2, units, 4), ERROR_NO_UNICODE_TRANSLATION);
}

} // namespace
