// Ordinary files: what CreateFileA makes of its arguments, and where bytes go.
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include <windows.h>

#include "temporary_folder.h"

namespace {

class Files : public testing::Test
{
protected:
    std::string Path(const char* name) const { return (folder.Path() / name).string(); }

    HANDLE Open(const char* name, DWORD access, DWORD disposition) const
    {
        return CreateFileA(Path(name).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, disposition,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    }

    const TemporaryFolder folder;
};

TEST_F(Files, DispositionsCreateOpenOrRefuse)
{
    // The error is the last one after the call, whatever came of it.
    const std::tuple<const char*, DWORD, DWORD, bool> cases[] = {
        {"a", OPEN_EXISTING, ERROR_FILE_NOT_FOUND, false},
        {"a", TRUNCATE_EXISTING, ERROR_FILE_NOT_FOUND, false},
        {"a", OPEN_ALWAYS, ERROR_SUCCESS, true},
        {"a", OPEN_ALWAYS, ERROR_ALREADY_EXISTS, true},
        {"a", CREATE_ALWAYS, ERROR_ALREADY_EXISTS, true},
        {"a", CREATE_NEW, ERROR_FILE_EXISTS, false},
        {"b", CREATE_NEW, ERROR_SUCCESS, true},
        {".", OPEN_EXISTING, ERROR_ACCESS_DENIED, false},
        {"a", 9, ERROR_INVALID_PARAMETER, false},
    };
    for (const auto& [name, disposition, error, opens] : cases) {
        const HANDLE file = Open(name, GENERIC_READ | GENERIC_WRITE, disposition);
        EXPECT_EQ(GetLastError(), error) << name << ' ' << disposition;
        EXPECT_EQ(file != INVALID_HANDLE_VALUE, opens) << name << ' ' << disposition;
        if (file != INVALID_HANDLE_VALUE)
            CloseHandle(file);
    }
}

TEST_F(Files, AppendersWriteBehindEachOther)
{
    const HANDLE first = Open("log", FILE_APPEND_DATA, OPEN_ALWAYS);
    const HANDLE second = Open("log", FILE_APPEND_DATA, OPEN_ALWAYS);
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(first, "one ", 4, &written, nullptr));
    EXPECT_TRUE(WriteFile(second, "two ", 4, &written, nullptr));
    EXPECT_TRUE(WriteFile(first, "three", 5, &written, nullptr));
    EXPECT_EQ(written, 5u);
    CloseHandle(first);
    CloseHandle(second);

    const HANDLE reader = Open("log", GENERIC_READ, OPEN_EXISTING);
    char text[64] = {};
    DWORD got = 0;
    EXPECT_TRUE(ReadFile(reader, text, sizeof text, &got, nullptr));
    EXPECT_STREQ(text, "one two three");
    EXPECT_TRUE(ReadFile(reader, text, sizeof text, &got, nullptr)); // at the end: success without bytes
    EXPECT_EQ(got, 0u);
    EXPECT_FALSE(WriteFile(reader, "x", 1, &written, nullptr));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ACCESS_DENIED});
    CloseHandle(reader);
    EXPECT_TRUE(DeleteFileA(Path("log").c_str()));
    EXPECT_FALSE(DeleteFileA(Path("log").c_str()));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
}

} // namespace
