// The registry of the stand-in: its file, and the serial-port map.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <windows.h>

#include "platform/surroundings.h"

namespace {

constexpr char kKey[] = "SOFTWARE\\Norvik\\LinkDesk";

struct Value
{
    LONG status = -1;
    DWORD type = REG_NONE;
    std::string data;

    bool operator==(const Value&) const = default;
};

Value Query(HKEY key, const char* name)
{
    char data[64];
    DWORD size = sizeof data;
    Value value;
    value.status = RegQueryValueExA(key, name, nullptr, &value.type, reinterpret_cast<BYTE*>(data), &size);
    if (value.status == ERROR_SUCCESS)
        value.data.assign(data, size);
    return value;
}

HKEY OpenKey(const char* path)
{
    HKEY key = nullptr;
    return RegOpenKeyExA(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key) == ERROR_SUCCESS ? key : nullptr;
}

const Value kDeleted{ERROR_KEY_DELETED, REG_NONE, ""};

Value Dword(const char (&bytes)[5])
{
    return {ERROR_SUCCESS, REG_DWORD, std::string(bytes, 4)};
}

TEST(RegistryFile, HoldsKeysAndValuesOfEveryKindFoundWithoutRegardToCase)
{
    const Surroundings surroundings;
    surroundings.WriteRegistry("REGEDIT4\r\n\r\n"
                               "; a comment\r\n"
                               "[HKEY_LOCAL_MACHINE\\Software\\NORVIK\\LinkDesk]\r\n"
                               "\"Logging Level\"=dword:000fff04\r\n"
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
    const HKEY key = OpenKey("software\\norvik\\LINKDESK");
    ASSERT_NE(key, nullptr);
    EXPECT_EQ(Query(key, "logging LEVEL"), Dword("\x04\xFF\x0F\0"));
    EXPECT_EQ(Query(key, nullptr), (Value{ERROR_SUCCESS, REG_SZ, std::string("default", 8)}));
    EXPECT_EQ(Query(key, "Path \"x\""), (Value{ERROR_SUCCESS, REG_SZ, std::string("C:\\a\xE9", 6)}));
    EXPECT_EQ(Query(key, "Bytes"), (Value{ERROR_SUCCESS, REG_BINARY, "\x01\x02\x0A\xFF"}));
    EXPECT_EQ(Query(key, "List"), (Value{ERROR_SUCCESS, REG_MULTI_SZ, std::string("a\0\0", 3)}));
    for (const char* broken : {"Unended", "NoNumber", "NoByte", ""})
        EXPECT_EQ(Query(key, broken).status, *broken ? ERROR_FILE_NOT_FOUND : ERROR_SUCCESS) << broken;
    RegCloseKey(key);

    HKEY parent = OpenKey("SOFTWARE\\Norvik");
    HKEY child = nullptr;
    EXPECT_EQ(RegOpenKeyExA(parent, "LinkDesk", 0, KEY_READ, &child), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(child), ERROR_SUCCESS);
    EXPECT_EQ(RegOpenKeyExA(parent, "Other", 0, KEY_READ, &child), ERROR_FILE_NOT_FOUND);
    RegCloseKey(parent);
    EXPECT_EQ(Query(parent, "x").status, ERROR_INVALID_HANDLE);
}

TEST(RegistryFile, IsReadAgainWhateverTheWayItChanges)
{
    const Surroundings surroundings;
    EXPECT_EQ(OpenKey(kKey), nullptr);
    const std::string heading = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n\"Logging Level\"=dword:";
    surroundings.WriteRegistry(heading + "1\n");
    const HKEY key = OpenKey(kKey);
    ASSERT_NE(key, nullptr);
    EXPECT_EQ(Query(key, "Logging Level"), Dword("\1\0\0\0"));
    surroundings.WriteRegistry(heading + "2\n");
    EXPECT_EQ(Query(key, "Logging Level"), Dword("\2\0\0\0"));
    surroundings.ReplaceRegistry(heading + "3\n");
    EXPECT_EQ(Query(key, "Logging Level"), Dword("\3\0\0\0"));
    surroundings.WriteRegistry(heading + "4\n"); // the replacing file is the one that is watched now
    EXPECT_EQ(Query(key, "Logging Level"), Dword("\4\0\0\0"));
    std::filesystem::remove(surroundings.registry);
    EXPECT_EQ(Query(key, "Logging Level"), kDeleted);
    std::filesystem::create_directory(surroundings.registry);
    EXPECT_EQ(OpenKey(kKey), nullptr);
    std::filesystem::remove(surroundings.registry);
    surroundings.WriteRegistry("no heading\n" + heading + "5\n");
    EXPECT_EQ(OpenKey(kKey), nullptr);
    surroundings.WriteRegistry(heading + "5\n");
    EXPECT_EQ(Query(key, "Logging Level"), kDeleted); // it is another key of the same name
    const HKEY second = OpenKey(kKey);
    EXPECT_EQ(Query(second, "Logging Level"), Dword("\5\0\0\0"));
    std::filesystem::rename(surroundings.root, surroundings.root.string() + ".away");
    EXPECT_EQ(Query(second, "Logging Level"), kDeleted);
    std::filesystem::create_directory(surroundings.root);
    surroundings.WriteRegistry(heading + "6\n");
    const HKEY third = OpenKey(kKey);
    EXPECT_EQ(Query(third, "Logging Level"), Dword("\6\0\0\0"));
    for (const HKEY opened : {key, second, third})
        EXPECT_EQ(RegCloseKey(opened), ERROR_SUCCESS);
    std::filesystem::remove_all(surroundings.root.string() + ".away");
}

TEST(RegistryFile, LengthsAreCheckedAndAskedFor)
{
    const Surroundings surroundings;
    surroundings.WriteRegistry("REGEDIT4\n[HKEY_LOCAL_MACHINE\\K]\n\"name\"=\"data\"\n");
    const HKEY key = OpenKey("K");
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(key, "name", nullptr, nullptr, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 5u);
    BYTE data[5] = {};
    size = 4;
    EXPECT_EQ(RegQueryValueExA(key, "name", nullptr, nullptr, data, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 5u);
    EXPECT_EQ(data[0], 0);
    EXPECT_EQ(RegQueryValueExA(key, "name", nullptr, nullptr, data, nullptr), ERROR_INVALID_PARAMETER);
    char name[5] = {};
    DWORD nameSize = 4;
    EXPECT_EQ(RegEnumValueA(key, 0, name, &nameSize, nullptr, nullptr, nullptr, nullptr), ERROR_MORE_DATA);
    nameSize = 5;
    EXPECT_EQ(RegEnumValueA(key, 0, name, &nameSize, nullptr, nullptr, data, &size), ERROR_SUCCESS);
    EXPECT_EQ(std::string(name), "name");
    EXPECT_EQ(nameSize, 4u);
    EXPECT_EQ(RegEnumValueA(key, 1, name, &nameSize, nullptr, nullptr, nullptr, nullptr), ERROR_NO_MORE_ITEMS);
    RegCloseKey(key);
}

using Map = std::vector<std::string>;

// The serial-port map, a line per value.
Map ReadSerialMap()
{
    Map map;
    const HKEY key = OpenKey("HARDWARE\\DEVICEMAP\\SERIALCOMM");
    for (DWORD index = 0;; index++) {
        char name[64];
        char data[64];
        DWORD nameSize = sizeof name;
        DWORD size = sizeof data;
        DWORD type = REG_NONE;
        auto* const bytes = reinterpret_cast<BYTE*>(data);
        if (RegEnumValueA(key, index, name, &nameSize, nullptr, &type, bytes, &size) != ERROR_SUCCESS)
            break;
        EXPECT_EQ(type, REG_SZ);
        map.push_back(std::string(name) + '=' + data);
    }
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    return map;
}

TEST(SerialMap, ListsThePlainPortsOfTheDeviceDirectoryInTheOrderOfTheirNames)
{
    const Surroundings surroundings;
    EXPECT_EQ(ReadSerialMap(), Map{});
    for (const char* name : {"com7", "Com12", "com5", "usb#vid_fffe&pid_0001#1#{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5}",
                             "com9{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5x", ".hidden"})
        surroundings.Plug(name);
    std::filesystem::create_directory(surroundings.devices / "com1");
    surroundings.WriteRegistry("rubbish");
    EXPECT_EQ(ReadSerialMap(), (Map{"\\Device\\Serial0=COM12", "\\Device\\Serial1=COM5", "\\Device\\Serial2=COM7",
                                    "\\Device\\Serial3=COM9{6B1D2E40-5C77-4A1E-9D3A-2F80C4E1B7A5X"}));
    surroundings.Unplug("Com12");
    EXPECT_EQ(ReadSerialMap().front(), "\\Device\\Serial0=COM5");
    std::filesystem::remove_all(surroundings.devices);
    EXPECT_EQ(ReadSerialMap(), Map{});
}

} // namespace
