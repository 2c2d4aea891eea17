// Puts a command's answer on standard output in the form that was asked for. Used at the end of every command.
#pragma once

#include "phnctl/cli/options.h"
#include "phnctl/cli/report.h"

#include <string>

namespace phnctl {

void Print(const Options& options, const Report& report);

// A sentence for people; the report for programs.
void PrintDone(const Options& options, const std::string& sentence, const Report& report);

// What is a file's text elsewhere. A terminal gets no control character of it.
void PrintFileText(const std::string& text);

// What was printed so far goes out now. Throws Failure when it, or anything before it, cannot be written: an answer
// that is lost on its way is a failure like any other.
void FlushOutput();

} // namespace phnctl
