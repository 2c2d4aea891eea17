// Rows of text under headings, aligned for people by the width that a terminal gives to each character. Used by the
// commands that list entries.
#pragma once

#include <string>
#include <vector>

namespace phnctl {

// Every text is made printable. A missing cell is empty.
std::string TableText(const std::vector<std::string>& headings, const std::vector<std::vector<std::string>>& rows);

} // namespace phnctl
