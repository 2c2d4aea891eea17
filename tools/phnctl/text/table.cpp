#include "phnctl/text/table.h"

#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace {

std::vector<std::string> PrintableRow(const std::vector<std::string>& row)
{
    std::vector<std::string> shown;
    std::transform(row.begin(), row.end(), std::back_inserter(shown),
                   [](const std::string& cell) { return Printable(cell); });
    return shown;
}

using Rows = std::vector<std::vector<std::string>>;

constexpr std::size_t kNarrowest = 6;
constexpr std::size_t kShort = 8;

struct Column
{
    std::size_t width = 0;
    bool isWhole = true; // cut last
    bool isMain = false; // what people look for: it keeps twice the room of other texts

    std::size_t Share() const { return isMain ? (width + 1) / 2 : width; }
};

// Digits and the marks between them, or a text with a date or a time of day in it: half of one is another one. What is
// short is never cut.
bool IsNumberOrTime(const std::string& cell)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (cell.size() <= kShort || cell.find_first_not_of("0123456789+*#pw:.- ") == std::string::npos)
        return true;
    for (std::size_t mark = cell.find_first_of(":-"); mark != std::string::npos;
         mark = cell.find_first_of(":-", mark + 1))
        if (mark > 0 && mark + 1 < cell.size() && isDigit(cell[mark - 1]) && isDigit(cell[mark + 1]))
            return true;
    return false;
}

Column ColumnOf(const Rows& rows, std::size_t number)
{
    constexpr std::size_t kWidestNumber = 24;
    Column column;
    column.isMain = rows.front()[number] == "Name" || rows.front()[number] == "Text";
    for (const auto& row : rows) {
        if (number >= row.size())
            continue;
        column.width = std::max(column.width, WidthOf(row[number]));
        column.isWhole = column.isWhole && (&row == &rows.front() || IsNumberOrTime(row[number]));
    }
    column.isWhole = column.isWhole && column.width <= kWidestNumber;
    return column;
}

// The widest column that may still be cut; null if there is none.
Column* ToNarrow(std::vector<Column>& columns, bool alsoWhole)
{
    Column* widest = nullptr;
    for (Column& column : columns)
        if (column.width > kNarrowest && (alsoWhole || !column.isWhole) &&
            (!widest || column.Share() > widest->Share()))
            widest = &column;
    return widest;
}

// Takes from the widest columns until all fit.
void Narrow(std::vector<Column>& columns, unsigned width)
{
    std::size_t needed = 2 * columns.size() - 2;
    for (const Column& column : columns)
        needed += column.width;
    for (; needed > width; --needed) {
        Column* column = ToNarrow(columns, false);
        if (!column)
            column = ToNarrow(columns, true);
        if (!column)
            return;
        --column->width;
    }
}

} // namespace

// The formatting library counts columns when it pads a text: what padding to a width beyond any text has added tells
// them.
std::size_t WidthOf(const std::string& text)
{
    const std::size_t beyond = text.size() * 2 + 1;
    return beyond + text.size() - fmt::formatted_size("{:<{}}", text, beyond);
}

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
    std::vector<Column> columns;
    for (std::size_t i = 0; i < headings.size(); ++i)
        columns.push_back(ColumnOf(shown, i));
    if (width != 0)
        Narrow(columns, width);
    std::string text;
    for (const auto& row : shown) {
        std::string line;
        for (std::size_t i = 0; i < row.size() && i < columns.size(); ++i)
            line += fmt::format("{:<{}}  ", Fitted(row[i], columns[i].width), columns[i].width);
        text += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
    }
    return text;
}

} // namespace phnctl
