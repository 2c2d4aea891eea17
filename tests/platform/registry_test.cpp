// The registry of the stand-in: its file, and the serial-port map.
#include <gtest/gtest.h>

#include <string>

#include <windows.h>

#include "platform/surroundings.h"

namespace {

constexpr char kKey[] = "SOFTWARE\\Norvik\\LinkDesk";
constexpr char kHeading[] =
    "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\Software\\NORVIK\\LinkDesk]\r\n\"Logging Level\"=dword:";

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

std::string Level(HKEY key)
{
    const std::string value = Query(key, "Logging Level");
    return value.starts_with("4 ") ? std::to_string(+value[2]) : value;
}

TEST(RegistryFile, HoldsKeysAndValuesOfEveryKindFoundWithoutRegardToCase)
{
    const Surroundings surroundings;
    surroundings.WriteRegistry(kHeading + std::string("000fff04\r\n"
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
                                                      "\"Logging Level\"=dword:00000002"));
    const HKEY parent = OpenKey("software\\norvik");
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(parent, "Other", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    ASSERT_EQ(RegOpenKeyExA(parent, "LINKDESK", 0, KEY_READ, &key), ERROR_SUCCESS);
    RegCloseKey(parent);
    EXPECT_EQ(Query(parent, "x"), "error 6");
    const std::pair<const char*, std::string> values[] = {
        {"logging LEVEL", std::string("4 \x04\xFF\x0F\0", 6)},
        {nullptr, std::string("1 default", 10)},
        {"Path \"x\"", std::string("1 C:\\a\xE9", 8)},
        {"Bytes", "3 \x01\x02\x0A\xFF"},
        {"List", std::string("7 a\0\0", 5)},
        {"Unended", "error 2"},
        {"NoNumber", "error 2"},
        {"NoByte", "error 2"},
    };
    for (const auto& [name, value] : values)
        EXPECT_EQ(Query(key, name), value) << name;
    RegCloseKey(key);
}

TEST(RegistryFile, IsReadAgainWhateverTheWayItChanges)
{
    const Surroundings surroundings;
    const std::string heading = kHeading;
    EXPECT_EQ(OpenKey(kKey), nullptr);
    surroundings.ReplaceRegistry(heading + "1");
    const HKEY key = OpenKey(kKey);
    EXPECT_EQ(Level(key), "1");
    surroundings.WriteRegistry(heading + "2");
    EXPECT_EQ(Level(key), "2");
    surroundings.ReplaceRegistry(heading + "3");
    EXPECT_EQ(Level(key), "3");
    surroundings.WriteRegistry(heading + "4"); // the replacing file is the one that is watched now
    EXPECT_EQ(Level(key), "4");
    surroundings.WriteRegistry("no heading\n" + heading + "5");
    EXPECT_EQ(Level(key), "error 1018");
    surroundings.WriteRegistry(heading + "5");
    EXPECT_EQ(Level(key), "error 1018"); // it is another key of the same name
    const HKEY second = OpenKey(kKey);
    EXPECT_EQ(Level(second), "5");
    std::filesystem::remove(surroundings.registry);
    EXPECT_EQ(Level(second), "error 1018");
    for (const HKEY opened : {key, second})
        EXPECT_EQ(RegCloseKey(opened), ERROR_SUCCESS);
}

TEST(RegistryFile, LengthsAreCheckedAndAskedFor)
{
    const Surroundings surroundings;
    surroundings.WriteRegistry("REGEDIT4\n[HKEY_LOCAL_MACHINE\\K]\n\"name\"=\"data\"\n");
    const HKEY key = OpenKey("K");
    BYTE data[5] = {};
    DWORD size = 4;
    EXPECT_EQ(RegQueryValueExA(key, "name", nullptr, nullptr, data, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 5u);
    EXPECT_EQ(data[0], 0);
    char name[5] = {};
    size = 4;
    EXPECT_EQ(RegEnumValueA(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr), ERROR_MORE_DATA);
    size = 5;
    EXPECT_EQ(RegEnumValueA(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(name, std::string("name"));
    EXPECT_EQ(size, 4u);
    EXPECT_EQ(RegEnumValueA(key, 1, name, &size, nullptr, nullptr, nullptr, nullptr), ERROR_NO_MORE_ITEMS);
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
        map += name + std::string("=") + Query(key, name).c_str() + ' ';
        size = sizeof name;
    }
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    return map;
}

TEST(SerialMap, ListsThePlainPortsOfTheDeviceDirectoryInTheOrderOfTheirNames)
{
    const Surroundings surroundings;
    for (const char* name : {"com7", "Com12", "com5", "usb#vid_fffe&pid_0001#1#{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5}",
                             "com9{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5x", ".hidden"})
        surroundings.Plug(name);
    std::filesystem::create_directory(surroundings.devices / "com1");
    EXPECT_EQ(ReadSerialMap(), "\\Device\\Serial0=1 COM12 \\Device\\Serial1=1 COM5 \\Device\\Serial2=1 COM7 "
                               "\\Device\\Serial3=1 COM9{6B1D2E40-5C77-4A1E-9D3A-2F80C4E1B7A5X ");
    std::filesystem::remove_all(surroundings.devices);
    EXPECT_EQ(ReadSerialMap(), "");
}

} // namespace
