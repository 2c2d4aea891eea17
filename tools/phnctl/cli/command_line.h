// From the arguments of the program to one command with its values. Used by main; hides the parsing library, which is
// compiled in command_line.cpp and command_options.cpp only.
#pragma once

#include "phnctl/cli/command.h"

namespace phnctl {

struct ParsedLine
{
    std::string text;                 // to print on standard output, when help or the version was asked for
    const Command* command = nullptr; // null then
    Invocation invocation;
};

// Throws Failure(kUsage) that says what is wrong and what is allowed.
ParsedLine ParseLine(const std::vector<Command>& commands, std::vector<std::string> arguments);

} // namespace phnctl
