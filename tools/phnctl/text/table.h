// Rows of text under headings, aligned for people by the width that a terminal gives to each character. Used by the
// commands that list entries.
#pragma once

#include <string>
#include <vector>

namespace phnctl {

// Every text is made printable. A missing cell is empty. `width` is the terminal's: the widest columns are cut to fit
// it, those of numbers and times last. 0 for no terminal: nothing is cut.
std::string TableText(const std::vector<std::string>& headings, const std::vector<std::vector<std::string>>& rows,
                      unsigned width);

// The columns that a terminal takes for a text.
std::size_t WidthOf(const std::string& text);

// Cut to the width, with a mark that it was.
std::string Fitted(const std::string& text, std::size_t width);

} // namespace phnctl
