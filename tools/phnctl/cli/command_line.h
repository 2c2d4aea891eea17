// From the arguments of the program to one command with its values. Used by main; hides the parsing library from the
// commands. Of two hidden words, "__complete" tells a shell what may come next, "__man" writes a part of the manual
// page.
#pragma once

#include "phnctl/cli/command.h"

namespace phnctl {

struct ParsedLine
{
    std::string text;                 // to print on standard output, where that is all there is to do
    const Command* command = nullptr; // null then
    Invocation invocation;
};

// Throws Failure(kUsage) that says what is wrong and what is allowed.
ParsedLine ParseLine(const std::vector<Command>& commands, std::vector<std::string> arguments);

} // namespace phnctl
