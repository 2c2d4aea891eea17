// The part of the manual page phnctl(1) that the commands themselves tell. Used when the page is built, through the
// hidden command line "phnctl __man".
#pragma once

#include "phnctl/cli/command.h"

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace phnctl {

// The sections OPTIONS, of those that every command takes, and COMMANDS, with the macros of man(7).
std::string ManualSections(const CLI::App& app, const std::vector<Command>& commands);

} // namespace phnctl
