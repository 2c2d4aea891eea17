// Ordinary files, of which the library has one: its log.
#include <gtest/gtest.h>
#include <windows.h>

#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <functional>

#include "temporary_folder.h"

namespace fs = std::filesystem;

namespace {

constexpr unsigned kEverybody = 0666;

TEST(Files, WhatIsOpenedToBeCreatedIsItsOwnersAlone)
{
    const TemporaryFolder folder;
    const fs::path file = folder.Path() / "file", other = folder.Path() / "other";
    const auto nothing = [] {};
    struct Case
    {
        const char* what;
        std::function<void()> arrange;
        DWORD disposition;
        DWORD error;
        unsigned mode;
    };
    const Case cases[] = {
        {"there already", nothing, OPEN_ALWAYS, ERROR_SUCCESS, 0600},
        {"opened, not created", nothing, OPEN_EXISTING, ERROR_SUCCESS, kEverybody},
        {"not there", [&] { fs::remove(file); }, OPEN_ALWAYS, ERROR_SUCCESS, 0600},
        {"under another name too", [&] { fs::create_hard_link(file, other); }, OPEN_ALWAYS, ERROR_SUCCESS, kEverybody},
        {"another user's", [&] { EXPECT_EQ(geteuid() == 0 ? chown(file.c_str(), 65534, 65534) : 0, 0); }, OPEN_ALWAYS,
         ERROR_SUCCESS, geteuid() == 0 ? kEverybody : 0600},
        {"a link",
         [&] {
             fs::rename(file, other);
             fs::create_symlink(other, file);
         },
         OPEN_ALWAYS, ERROR_CANT_RESOLVE_FILENAME, kEverybody},
    };
    for (const auto& [what, arrange, disposition, error, mode] : cases) {
        fs::remove(file);
        fs::remove(other);
        std::ofstream(file).put('x');
        fs::permissions(file, fs::perms{kEverybody});
        arrange();
        SetLastError(ERROR_SUCCESS);
        const HANDLE opened = CreateFileA(file.c_str(), FILE_APPEND_DATA, 0, nullptr, disposition, 0, nullptr);
        EXPECT_EQ(opened == INVALID_HANDLE_VALUE ? GetLastError() : ERROR_SUCCESS, error) << what;
        EXPECT_EQ(fs::status(file).permissions(), fs::perms{mode}) << what;
        CloseHandle(opened);
    }
}

} // namespace
