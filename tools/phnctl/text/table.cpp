#include "phnctl/text/table.h"

#include "phnctl/text/text.h"

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

using Rows = std::vector<std::vector<std::string>>;

// The widths of a column's cells, without the empty ones; the heading's first.
std::vector<std::size_t> CellWidths(const Rows& rows, std::size_t column)
{
    std::vector<std::size_t> widths;
    for (const auto& row : rows)
        if (column < row.size() && !row[column].empty())
            widths.push_back(WidthOf(row[column]));
    return widths;
}

// What nine of ten cells need: a few long ones move the rest of their own rows, not all rows.
std::size_t UsualWidth(std::vector<std::size_t> widths)
{
    const auto ninth = widths.begin() + static_cast<std::ptrdiff_t>(widths.size() * 9 / 10);
    const std::size_t heading = widths.front();
    std::nth_element(widths.begin(), ninth, widths.end());
    return std::max(heading, *ninth);
}

// Takes from the widest columns until all fit.
void Narrow(std::vector<std::size_t>& widths, unsigned width)
{
    constexpr std::size_t kNarrowest = 8;
    std::size_t needed = 2 * widths.size() - 2;
    for (const std::size_t column : widths)
        needed += column;
    while (needed > width) {
        const auto widest = std::max_element(widths.begin(), widths.end());
        if (*widest <= kNarrowest)
            return;
        --*widest;
        --needed;
    }
}

} // namespace

std::string Fitted(const std::string& text, std::size_t width)
{
    if (WidthOf(text) <= width)
        return text;
    std::string beginning = text;
    while (!beginning.empty() && WidthOf(beginning) >= width) {
        while ((static_cast<unsigned char>(beginning.back()) & 0xC0) == 0x80)
            beginning.pop_back();
        beginning.pop_back();
    }
    return beginning + "\u2026";
}

std::string TableText(const std::vector<std::string>& headings, const std::vector<std::vector<std::string>>& rows,
                      unsigned width)
{
    Rows shown{headings};
    std::transform(rows.begin(), rows.end(), std::back_inserter(shown), PrintableRow);
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < headings.size(); ++i) {
        const std::vector<std::size_t> cells = CellWidths(shown, i);
        widths.push_back(width == 0 ? UsualWidth(cells) : *std::max_element(cells.begin(), cells.end()));
    }
    if (width != 0)
        Narrow(widths, width);
    std::string text;
    for (const auto& row : shown) {
        std::string line;
        for (std::size_t i = 0; i < row.size() && i < widths.size(); ++i)
            line += fmt::format("{:<{}}  ", width == 0 ? row[i] : Fitted(row[i], widths[i]), widths[i]);
        text += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
    }
    return text;
}

} // namespace phnctl
