#include "phnctl/table.h"

#include "phnctl/text.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace {

// The columns that the formatting library counts for a text when it pads it: what padding to a width beyond any text
// has added tells it.
std::size_t WidthOf(const std::string& text)
{
    const std::size_t beyond = text.size() * 2 + 1;
    return beyond + text.size() - fmt::formatted_size("{:<{}}", text, beyond);
}

std::vector<std::string> PrintableRow(const std::vector<std::string>& row)
{
    std::vector<std::string> shown;
    std::transform(row.begin(), row.end(), std::back_inserter(shown),
                   [](const std::string& cell) { return Printable(cell); });
    return shown;
}

} // namespace

std::string TableText(const std::vector<std::string>& headings, const std::vector<std::vector<std::string>>& rows)
{
    std::vector<std::vector<std::string>> shown{headings};
    std::transform(rows.begin(), rows.end(), std::back_inserter(shown), PrintableRow);
    std::vector<std::size_t> widths(headings.size());
    for (const auto& row : shown)
        for (std::size_t i = 0; i < row.size() && i < widths.size(); ++i)
            widths[i] = std::max(widths[i], WidthOf(row[i]));
    std::string text;
    for (const auto& row : shown) {
        std::string line;
        for (std::size_t i = 0; i < row.size() && i < widths.size(); ++i)
            line += fmt::format("{:<{}}  ", row[i], widths[i]);
        text += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
    }
    return text;
}

} // namespace phnctl
