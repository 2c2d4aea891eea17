// Modules: a small one is loaded, asked for its functions and its file, and freed. And the system's version.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <windows.h>

#include "temporary_folder.h"

namespace {

std::string FileNameOf(HMODULE module)
{
    char path[1024];
    return {path, GetModuleFileNameA(module, path, sizeof path)};
}

TEST(Modules, AreLoadedAskedAndFreed)
{
    const std::string path = PLATFORM_TEST_MODULE;
    const std::string name = std::filesystem::path(path).filename().string();
    const HMODULE module = LoadLibraryA(path.c_str());
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(LoadLibraryA(path.c_str()), module);
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_TRUE(std::filesystem::equivalent(FileNameOf(module), path));
    EXPECT_EQ(GetModuleHandleA(name.c_str()), module);
    const FARPROC answer = GetProcAddress(module, "PlatformTestAnswer");
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    for (const char* missing : {"PlatformTestNothing", "malloc"}) {
        EXPECT_EQ(GetProcAddress(module, missing), nullptr) << missing;
        EXPECT_EQ(GetLastError(), DWORD{ERROR_PROC_NOT_FOUND});
    }
    char start[5];
    EXPECT_EQ(GetModuleFileNameA(module, start, sizeof start), sizeof start);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});

    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_EQ(GetModuleHandleA(name.c_str()), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
}

TEST(Modules, TheProgramIsOneAndWhatIsNoneIsNotLoaded)
{
    EXPECT_TRUE(std::filesystem::exists(FileNameOf(nullptr)));
    EXPECT_EQ(LoadLibraryA("platform_test_nothing.dll"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
    const TemporaryFolder folder;
    const std::string text = (folder.Path() / "text.dll").string();
    std::ofstream(text) << "this is no module, but long enough to be looked at: " << std::string(4096, '.');
    EXPECT_EQ(LoadLibraryA(text.c_str()), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_BAD_EXE_FORMAT});
}

TEST(System, VersionIsTold)
{
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof version;
    EXPECT_TRUE(GetVersionExA(&version));
    EXPECT_GE(version.dwMajorVersion, 4u);
}

} // namespace
