// The registry of the stand-in: its files, and the serial-port map.
#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "support/surroundings.h"

namespace {

using namespace std::string_literals;

HKEY OpenKey(const char* path)
{
    HKEY key = nullptr;
    return RegOpenKeyExA(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key) == ERROR_SUCCESS ? key : nullptr;
}

// "type data" of a value, or "error n".
std::string Query(HKEY key, const char* name)
{
    char data[64];
    DWORD size = sizeof data;
    DWORD type = REG_NONE;
    const LONG status = RegQueryValueExA(key, name, nullptr, &type, reinterpret_cast<BYTE*>(data), &size);
    return status == ERROR_SUCCESS ? std::to_string(type) + ' ' + std::string(data, size)
                                   : "error " + std::to_string(status);
}

// The same of a value of the key K.
std::string Read(const char* name)
{
    HKEY key = nullptr;
    if (const LSTATUS status = RegOpenKeyExA(HKEY_LOCAL_MACHINE, "K", 0, KEY_READ, &key); status != ERROR_SUCCESS)
        return "error " + std::to_string(status);
    const std::string value = Query(key, name);
    RegCloseKey(key);
    return value;
}

class RegistryFile : public testing::Test
{
protected:
    const Surroundings surroundings;
};

TEST_F(RegistryFile, HoldsKeysAndValuesOfEveryKindFoundWithoutRegardToCase)
{
    surroundings.WriteRegistry("REGEDIT4\r\n"
                               "\"Before\"=dword:00000001\r\n"
                               "[HKEY_LOCAL_MACHINE\\Software\\NORVIK\\LinkDesk]\r\n"
                               "\"Logging Level\"=dword:000fff04\r\n"
                               "; a comment\r\n"
                               "@=\"default\"\r\n"
                               "\"Path \\\"x\\\"\" = \"C:\\\\a\xE9\"\r\n"
                               "\"Bytes\"=hex:01,02,\\\r\n"
                               "  0a,FF\r\n"
                               "\"List\"=hex(7):61,00,00\r\n"
                               "\"Unended\"=\"abc\r\n"
                               "\"NoNumber\"=dword:xyz\r\n"
                               "\"NoByte\"=hex:1,100\r\n"
                               "rubbish \x01\xFF\r\n"
                               "[HKEY_CURRENT_USER\\Software\\Norvik\\LinkDesk]\r\n"
                               "\"Logging Level\"=dword:00000001\r\n"
                               "[unclosed\r\n"
                               "\"Logging Level\"=dword:00000002");
    const HKEY parent = OpenKey("software\\norvik");
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(parent, "Other", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    ASSERT_EQ(RegOpenKeyExA(parent, "LINKDESK", 0, KEY_READ, &key), ERROR_SUCCESS);
    RegCloseKey(parent);
    EXPECT_EQ(Query(parent, "x"), "error 6");
    const std::pair<const char*, std::string> values[] = {
        {"logging LEVEL", "4 \x04\xFF\x0F\0"s},
        {nullptr, "1 default\0"s},
        {"Path \"x\"", "1 C:\\a\xE9\0"s},
        {"Bytes", "3 \x01\x02\x0A\xFF"},
        {"List", "7 a\0\0"s},
        {"Unended", "error 2"},
        {"NoNumber", "error 2"},
        {"NoByte", "error 2"},
    };
    for (const auto& [name, value] : values)
        EXPECT_EQ(Query(key, name), value) << (name ? name : "@");
    RegCloseKey(key);
}

TEST_F(RegistryFile, IsToldByItsHeadingInAnyEncoding)
{
    const std::string rest = "\r\n\r\n[HKEY_LOCAL_MACHINE\\K]\r\n\"V\"=hex(7):61,00,e9,00,00,00\r\n\"\xE9\"=\"\xE9\"";
    const std::u16string wide = u"\uFEFFWindows Registry Editor Version 5.00\r\n[HKEY_LOCAL_MACHINE\\K]\r\n"
                                u"\"V\"=hex(7):61,00,e9,00,00,00\r\n\"\u00E9\"=\"\u00E9\u03A9\"\r\n";
    const std::string utf16(reinterpret_cast<const char*>(wide.data()), 2 * wide.size());
    const std::string bad = "error " + std::to_string(ERROR_BADDB);
    // And what V and \xE9 hold.
    const std::tuple<const char*, std::string, std::string, std::string> cases[] = {
        {"version 4", "REGEDIT4" + rest, "7 a\0\xE9\0\0\0"s, "1 \xE9\0"s},
        {"version 5", "Windows Registry Editor Version 5.00" + rest, "7 a\xE9\0"s, "1 \xE9\0"s},
        {"UTF-16, half a unit more", utf16 + "x", "7 a\xE9\0"s, "1 \xE9?\0"s},
        {"UTF-8", "\xEF\xBB\xBFREGEDIT4\n[HKEY_LOCAL_MACHINE\\K]\n\"V\"=\"v\"\n\"\xC3\xA9\"=\"\xC3\xA9\"", "1 v\0"s,
         "1 \xE9\0"s},
        {"a mark alone", "\xFF\xFE", bad, bad},
        {"another version", "REGEDIT5" + rest, bad, bad},
        {"empty", "", bad, bad},
    };
    for (const auto& [name, bytes, list, text] : cases) {
        surroundings.WriteRegistry(bytes);
        EXPECT_EQ(Read("V"), list) << name;
        EXPECT_EQ(Read("\xE9"), text) << name;
    }
    std::filesystem::remove(surroundings.registry);
    EXPECT_EQ(Read("V"), "error " + std::to_string(ERROR_FILE_NOT_FOUND));
    std::filesystem::create_directory(surroundings.registry);
    EXPECT_EQ(Read("V"), "error " + std::to_string(ERROR_CANTREAD));
}

TEST_F(RegistryFile, HoldsOverTheFilesBeforeIt)
{
    const auto second = surroundings.root / "second.reg";
    setenv("PHNNRV_REGISTRY", (surroundings.registry.string() + "::" + second.string()).c_str(), 1);
    const std::string key = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\K]\n";
    surroundings.WriteRegistry(key + "\"A\"=\"1\"\n\"B\"=\"1\"\n");
    std::ofstream(second) << key << "\"B\"=\"2\"\n";
    EXPECT_EQ(Read("A") + Read("B"), "1 1\0001 2\0"s);
    std::ofstream(second) << key << "\"B\"=\"3\"\n";
    surroundings.WriteRegistry("rubbish");
    EXPECT_EQ(Read("A") + Read("B"), "error 21 3\0"s);
}

TEST_F(RegistryFile, IsReadAgainWhateverTheWayItChanges)
{
    const std::string heading = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\K]\n\"V\"=";
    surroundings.ReplaceRegistry(heading + "\"1\"");
    const HKEY key = OpenKey("K");
    EXPECT_EQ(Query(key, "V"), "1 1\0"s);
    surroundings.WriteRegistry(heading + "\"2\"");
    EXPECT_EQ(Query(key, "V"), "1 2\0"s);
    surroundings.ReplaceRegistry(heading + "\"3\"");
    EXPECT_EQ(Query(key, "V"), "1 3\0"s);
    surroundings.WriteRegistry(heading + "\"4\""); // the replacing file is the one that is watched now
    EXPECT_EQ(Query(key, "V"), "1 4\0"s);
    std::filesystem::remove(surroundings.registry);
    EXPECT_EQ(Query(key, "V"), "error 1018");
    surroundings.WriteRegistry(heading + "\"5\"");
    EXPECT_EQ(Query(key, "V"), "error 1018"); // it is another key of the same name
    EXPECT_EQ(Read("V"), "1 5\0"s);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(RegistryFile, NothingIsWrittenBeyondTheCallersBuffer)
{
    surroundings.WriteRegistry("REGEDIT4\n[HKEY_LOCAL_MACHINE\\K]\n\"name\"=\"data\"\n");
    const HKEY key = OpenKey("K");
    char data[6] = "-----";
    DWORD size = 4;
    EXPECT_EQ(RegQueryValueExA(key, "name", nullptr, nullptr, reinterpret_cast<BYTE*>(data), &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 5u);
    size = 4;
    EXPECT_EQ(RegEnumValueA(key, 0, data, &size, nullptr, nullptr, nullptr, nullptr), ERROR_MORE_DATA);
    EXPECT_STREQ(data, "-----");
    RegCloseKey(key);
}

// The serial-port map: "\\Device\\Serial0=1 COM5 " and so on, with the value's type.
std::string ReadSerialMap()
{
    std::string map;
    const HKEY key = OpenKey("HARDWARE\\DEVICEMAP\\SERIALCOMM");
    char name[64];
    DWORD size = sizeof name;
    for (DWORD at = 0; !RegEnumValueA(key, at, name, &size, nullptr, nullptr, nullptr, nullptr); at++) {
        map += name + "="s + Query(key, name).c_str() + ' ';
        size = sizeof name;
    }
    RegCloseKey(key);
    return map;
}

TEST(SerialMap, ListsThePlainPortsOfTheDeviceDirectoryInTheOrderOfTheirNames)
{
    const Surroundings surroundings;
    for (const char* name : {"com7", "Com12", "usb#vid_fffe&pid_0001#1#{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5}",
                             "com9{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5x", ".hidden"})
        surroundings.Plug(name);
    std::filesystem::create_directory(surroundings.devices / "com1");
    EXPECT_EQ(ReadSerialMap(), "\\Device\\Serial0=1 COM12 \\Device\\Serial1=1 COM7 "
                               "\\Device\\Serial2=1 COM9{6B1D2E40-5C77-4A1E-9D3A-2F80C4E1B7A5X ");
    std::filesystem::remove_all(surroundings.devices);
    EXPECT_EQ(ReadSerialMap(), "");
}

} // namespace
