// Questions about the parsing library's tree of commands. Used by all that walks it along the words of a command line.
#pragma once

#include <CLI/App.hpp>
#include <string>

namespace phnctl {

// The command of this name below another one; null when there is none.
const CLI::App* Child(const CLI::App& app, const std::string& name);

// The option of this name ("--wait") that may be given to the command; null when there is none.
const CLI::Option* FindOption(const CLI::App& app, const std::string& name);

// True for an option that takes the word behind it, as "--wait=5" does not.
bool TakesValue(const CLI::App& app, const std::string& word);

} // namespace phnctl
