// Puts a command's answer on standard output in the form that was asked for. Used at the end of every command.
#pragma once

#include "phnctl/command.h"
#include "phnctl/report.h"

namespace phnctl {

void Print(const Options& options, const Report& report);

// A sentence for people; the report for programs.
void PrintDone(const Options& options, const std::string& sentence, const Report& report);

} // namespace phnctl
