// What the library is told by the registry beside the "Logging Level": settings that are read when they are needed, not
// at every line.
#pragma once

#include <windows.h>

// The key that holds the library's settings, below HKEY_LOCAL_MACHINE.
inline constexpr char kSettingsKey[] = "SOFTWARE\\Norvik\\LinkDesk";

// A DWORD of that key; 0 if it is missing or of another type.
DWORD ReadSetting(const char* pszName) noexcept;
