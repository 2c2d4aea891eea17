// What counts as a registry file: its headings and encodings, and several files together.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include <windows.h>

#include "platform/surroundings.h"

namespace {

using namespace std::string_literals;

// The value's bytes, or the status of opening its key.
std::string Read(const char* name)
{
    HKEY key = nullptr;
    if (const LSTATUS status = RegOpenKeyExA(HKEY_LOCAL_MACHINE, "K", 0, KEY_READ, &key); status != ERROR_SUCCESS)
        return std::to_string(status);
    char data[16];
    DWORD size = sizeof data;
    const LSTATUS status = RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(data), &size);
    RegCloseKey(key);
    return status == ERROR_SUCCESS ? std::string(data, size) : "none";
}

std::string Utf16(const std::u16string& text)
{
    return {reinterpret_cast<const char*>(text.data()), 2 * text.size()};
}

TEST(RegistryHeading, TellsRegistryFilesFromOthers)
{
    const std::string rest = "\r\n\r\n[HKEY_LOCAL_MACHINE\\K]\r\n\"V\"=hex(7):61,00,e9,00,00,00\r\n\"\xE9\"=\"\xE9\"";
    const std::u16string wide = u"Windows Registry Editor Version 5.00\r\n[HKEY_LOCAL_MACHINE\\K]\r\n"
                                u"\"V\"=hex(7):61,00,e9,00,00,00\r\n\"\u00E9\"=\"\u00E9\u03A9\"\r\n";
    const std::string bad = std::to_string(ERROR_BADDB);
    const struct
    {
        const char* name;
        std::string bytes;
        std::string list; // V
        std::string text; // \xE9
    } cases[] = {
        {"version 4", "REGEDIT4" + rest, "a\0\xE9\0\0\0"s, "\xE9\0"s},
        {"version 5", "Windows Registry Editor Version 5.00" + rest, "a\xE9\0"s, "\xE9\0"s},
        {"UTF-16", "\xFF\xFE" + Utf16(wide), "a\xE9\0"s, "\xE9?\0"s},
        {"UTF-16, half a unit more", "\xFF\xFE" + Utf16(wide) + "x", "a\xE9\0"s, "\xE9?\0"s},
        {"UTF-8", "\xEF\xBB\xBFREGEDIT4\n[HKEY_LOCAL_MACHINE\\K]\n\"V\"=\"v\"\n\"\xC3\xA9\"=\"\xC3\xA9\"", "v\0"s,
         "\xE9\0"s},
        {"UTF-16, big-endian", "\xFE\xFF\0R\0E"s, bad, bad},
        {"a mark alone", "\xFF\xFE", bad, bad},
        {"another version", "REGEDIT5" + rest, bad, bad},
        {"empty", "", bad, bad},
    };
    const Surroundings surroundings;
    for (const auto& [name, bytes, list, text] : cases) {
        SCOPED_TRACE(name);
        surroundings.WriteRegistry(bytes);
        EXPECT_EQ(Read("V"), list);
        EXPECT_EQ(Read("\xE9"), text);
    }
    std::filesystem::remove(surroundings.registry);
    EXPECT_EQ(Read("V"), std::to_string(ERROR_FILE_NOT_FOUND));
    std::filesystem::create_directory(surroundings.registry);
    EXPECT_EQ(Read("V"), std::to_string(ERROR_CANTREAD));
}

TEST(RegistryList, ALaterFileHoldsOverAnEarlierOne)
{
    const Surroundings surroundings;
    const auto second = surroundings.root / "second.reg";
    setenv("PHNNRV_REGISTRY", (surroundings.registry.string() + "::" + second.string()).c_str(), 1);
    const std::string key = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\K]\n";
    surroundings.WriteRegistry(key + "\"A\"=\"1\"\n\"B\"=\"1\"\n");
    std::ofstream(second) << key << "\"B\"=\"2\"\n";
    EXPECT_EQ(Read("A") + Read("B"), "1\0002\0"s);
    std::ofstream(second) << key << "\"B\"=\"3\"\n";
    EXPECT_EQ(Read("A") + Read("B"), "1\0003\0"s);
    surroundings.WriteRegistry("rubbish");
    EXPECT_EQ(Read("A") + Read("B"), "none3\0"s);
}

} // namespace
