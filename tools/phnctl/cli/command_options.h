// The options and arguments of commands in the words of the parsing library. Used by command_line.cpp; the values must
// live as long as the app.
#pragma once

#include "phnctl/cli/command.h"

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace phnctl {

// The options that every command takes; the level of the log as it was typed.
void AddOptions(CLI::App& app, Options& options, std::string& logLevel);

void AddArgument(CLI::App& app, const Argument& argument, std::vector<std::string>& values);

// A value for each time that the option is given, an empty one where it takes none.
void AddCommandOption(CLI::App& app, const CommandOption& option, std::vector<std::string>& values);

} // namespace phnctl
