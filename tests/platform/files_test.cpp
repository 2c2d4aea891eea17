// Ordinary files, of which the library has one: its log.
#include <gtest/gtest.h>
#include <windows.h>

#include <unistd.h>

#include <fstream>
#include <functional>
#include <tuple>

#include "temporary_folder.h"

namespace fs = std::filesystem;

TEST(Files, WhatIsOpenedToBeCreatedIsItsOwnersAlone)
{
    const TemporaryFolder folder;
    const fs::path file = folder.Path() / "file", other = folder.Path() / "other";
    constexpr unsigned kEverybody = 0666;
    const bool isRoot = geteuid() == 0;
    const std::tuple<const char*, std::function<void()>, DWORD, unsigned> cases[] = {
        {"there already", [] {}, OPEN_ALWAYS, 0600},
        {"opened, not created", [] {}, OPEN_EXISTING, kEverybody},
        {"not there", [&] { fs::remove(file); }, OPEN_ALWAYS, 0600},
        {"under another name too", [&] { fs::create_hard_link(file, other); }, OPEN_ALWAYS, kEverybody},
        {"a link", [&] { fs::rename(file, other), fs::create_symlink(other, file); }, OPEN_ALWAYS, kEverybody},
        {"another user's", [&] { EXPECT_EQ(isRoot ? chown(file.c_str(), 65534, 65534) : 0, 0); }, OPEN_ALWAYS,
         isRoot ? kEverybody : 0600},
    };
    for (const auto& [what, arrange, disposition, mode] : cases) {
        fs::remove(file);
        fs::remove(other);
        std::ofstream(file).put('x');
        fs::permissions(file, fs::perms{kEverybody});
        arrange();
        const HANDLE opened = CreateFileA(file.c_str(), FILE_APPEND_DATA, 0, nullptr, disposition, 0, nullptr);
        EXPECT_EQ(opened == INVALID_HANDLE_VALUE, fs::is_symlink(file)) << what;
        EXPECT_EQ(fs::status(file).permissions(), fs::perms{mode}) << what;
        CloseHandle(opened);
    }
}
