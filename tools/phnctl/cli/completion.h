// What a shell may offer for the word that is being typed. Used by the scripts of packaging/completions through the
// hidden command line "phnctl __complete WORD...".
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace phnctl {

// The words are those behind the program's name, up to the one that is being typed, which may be empty. A line for each
// candidate: the word, a tab, what it is. All that may stand there are told; matching them with what is typed already
// is the shell's. The line ":files" or ":folders" stands for the names that the shell knows.
std::string Candidates(const CLI::App& app, const std::vector<std::string>& words);

} // namespace phnctl
