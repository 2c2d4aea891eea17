// Modules: a path that does not fit its buffer, which callers then try again with a larger one.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <windows.h>

TEST(Modules, APathIsCutToItsBufferAndSaysSo)
{
    std::string path(1024, '\0');
    path.resize(GetModuleFileNameA(nullptr, path.data(), 1024));
    EXPECT_TRUE(std::filesystem::exists(path)) << path;
    char start[5];
    EXPECT_EQ(GetModuleFileNameA(GetModuleHandleA(nullptr), start, sizeof start), sizeof start);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(std::string(start, 4), path.substr(0, 4));
}
