// What the exports have in common: the format that is asked for, and the file. Used by the commands that export.
#pragma once

#include "phnctl/cli/command.h"

#include <string>
#include <vector>

namespace phnctl {

Argument ExportArgument();                                           // FILE
std::vector<CommandOption> ExportOptions(const std::string& format); // --format, "json" or "csv"; and --force

// Is it CSV? `format` is the other one, which is the default. Throws Failure(kUsage).
bool WantsCsv(const Invocation& invocation, const std::string& format);

// To FILE, or to standard output for "-".
void WriteExport(const Invocation& invocation, const std::string& text);

// The same, with a sentence on how many they are.
void WriteExport(const Invocation& invocation, const std::string& text, std::size_t count, const std::string& one);

} // namespace phnctl
