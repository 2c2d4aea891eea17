// Ordinary files: what CreateFileA makes of its arguments, and where bytes go.
#include <gtest/gtest.h>

#include <string>

#include <windows.h>

#include "temporary_folder.h"

namespace {

struct Opened
{
    HANDLE file;
    DWORD error; // the last one after the call, whatever came of it
};

class Files : public testing::Test
{
protected:
    Opened Open(const char* name, DWORD access, DWORD disposition) const
    {
        const HANDLE file =
            CreateFileA((folder.Path() / name).string().c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                        disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
        return {file, GetLastError()};
    }

    const TemporaryFolder folder;
};

TEST_F(Files, AppendersWriteBehindEachOther)
{
    EXPECT_EQ(Open("log", GENERIC_READ, OPEN_EXISTING).error, DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(Open(".", GENERIC_READ, OPEN_EXISTING).error, DWORD{ERROR_ACCESS_DENIED});
    const Opened first = Open("log", FILE_APPEND_DATA, OPEN_ALWAYS);
    const Opened second = Open("log", FILE_APPEND_DATA, OPEN_ALWAYS);
    EXPECT_EQ(first.error, DWORD{ERROR_SUCCESS});
    EXPECT_EQ(second.error, DWORD{ERROR_ALREADY_EXISTS});
    DWORD count = 0;
    EXPECT_TRUE(WriteFile(first.file, "one ", 4, &count, nullptr));
    EXPECT_TRUE(WriteFile(second.file, "two ", 4, &count, nullptr));
    EXPECT_TRUE(WriteFile(first.file, "three", 5, &count, nullptr));
    EXPECT_EQ(count, 5u);

    const Opened reader = Open("log", GENERIC_READ, OPEN_EXISTING);
    char text[64] = {};
    EXPECT_TRUE(ReadFile(reader.file, text, sizeof text, &count, nullptr));
    EXPECT_STREQ(text, "one two three");
    EXPECT_TRUE(ReadFile(reader.file, text, sizeof text, &count, nullptr)); // at the end: success without bytes
    EXPECT_EQ(count, 0u);
    EXPECT_FALSE(WriteFile(reader.file, "x", 1, &count, nullptr));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ACCESS_DENIED});
    for (const Opened& opened : {first, second, reader})
        CloseHandle(opened.file);
}

} // namespace
