#include "phnctl/text/csv.h"

#include "phnctl/text/text.h"

namespace phnctl {

namespace {

bool IsTakenForFormula(const std::string& cell)
{
    if (cell.empty() || std::string_view("=+-@\t\r").find(cell.front()) == std::string_view::npos)
        return false;
    const bool isSigned = cell.front() == '+' || cell.front() == '-';
    return !isSigned || cell.find_first_not_of("0123456789", 1) != std::string::npos;
}

// A message may have lines; other control characters would reach the terminal that shows the file.
std::string WithoutOtherControls(std::string_view cell)
{
    std::string text;
    std::size_t begin = 0;
    for (std::size_t end; (end = cell.find_first_of("\t\r\n", begin)) != std::string_view::npos; begin = end + 1)
        text.append(VisibleControls(cell.substr(begin, end - begin))).append(1, cell[end]);
    return text + VisibleControls(cell.substr(begin));
}

std::string Quoted(const std::string& cell)
{
    std::string text = (IsTakenForFormula(cell) ? "'" : "") + WithoutOtherControls(cell);
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    for (std::size_t at = text.find('"'); at != std::string::npos; at = text.find('"', at + 2))
        text.insert(at, 1, '"');
    return '"' + text + '"';
}

void AppendLine(std::string& text, const std::vector<std::string>& cells)
{
    for (const std::string& cell : cells)
        text += (&cell == &cells.front() ? "" : ",") + Quoted(cell);
    text += "\r\n";
}

} // namespace

std::string CsvText(const std::vector<std::string>& headings, const std::vector<std::vector<std::string>>& rows)
{
    std::string text;
    AppendLine(text, headings);
    for (const std::vector<std::string>& row : rows)
        AppendLine(text, row);
    return text;
}

} // namespace phnctl
