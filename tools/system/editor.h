// The person's own editor. Used by the tools. One implementation per system, chosen by CMake.
#pragma once

#include <filesystem>

namespace host {

// A new folder that only this user reads, for what is to be edited. Throws std::system_error.
std::filesystem::path MakeEditingFolder();

// Has the person edit the file in $VISUAL, $EDITOR or what the system has for that, and waits for its end. False when
// it does not start or ends with a failure.
bool Edit(const std::filesystem::path& file);

} // namespace host
