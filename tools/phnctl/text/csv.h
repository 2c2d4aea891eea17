// Tables as files that spreadsheets read: RFC 4180 in UTF-8, with a line of headings. Used by the exports.
#pragma once

#include <string>
#include <vector>

namespace phnctl {

// A cell that a spreadsheet would take for a formula gets an apostrophe before it: its text may come from anybody who
// has sent a message. A plus or a minus before nothing but digits is none.
std::string CsvText(const std::vector<std::string>& headings, const std::vector<std::vector<std::string>>& rows);

} // namespace phnctl
