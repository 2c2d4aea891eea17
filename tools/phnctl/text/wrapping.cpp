#include "phnctl/text/wrapping.h"

#include "phnctl/text/table.h"

#include <algorithm>
#include <sstream>

namespace phnctl {

namespace {

// Where a line's text begins behind its first column: "  --range A-B    Only the indexes". 0: it has one column.
std::size_t SecondColumn(const std::string& line, std::size_t indent)
{
    const std::size_t gap = line.find("  ", indent);
    const std::size_t second = gap == std::string::npos ? gap : line.find_first_not_of(' ', gap);
    return second == std::string::npos ? 0 : second;
}

std::string WrappedLine(const std::string& line, std::size_t width, std::size_t hanging)
{
    const std::size_t indent = std::min(line.find_first_not_of(' '), line.size());
    const std::size_t second = SecondColumn(line, indent);
    const bool isTable = hanging == 0 && second != 0 && second < width * 2 / 3;
    const std::string margin(isTable ? second : indent + hanging, ' ');
    std::string text;
    std::string current = line;
    while (WidthOf(current) > width) {
        std::size_t end = 0;
        for (std::size_t at = current.find(' ', margin.size() + 1); at != std::string::npos;
             at = current.find(' ', at + 1)) {
            if (WidthOf(current.substr(0, at)) > width && end != 0)
                break;
            end = at;
        }
        if (end == 0)
            break; // one long word
        text.append(current, 0, end).append(1, '\n');
        current.replace(0, current.find_first_not_of(' ', end), margin);
    }
    return text + current + '\n';
}

} // namespace

std::string Flowing(std::string text)
{
    for (std::size_t end = text.find('\n', 1); end != std::string::npos; end = text.find('\n', end + 1)) {
        const std::size_t begin = text.rfind('\n', end - 1) + 1; // of the line; 0 for the first
        const bool goesOn = end + 1 < text.size() && text[end + 1] != '\n' && text[end + 1] != ' ';
        if (goesOn && begin < end && text[begin] != ' ')
            text[end] = ' ';
    }
    return text;
}

std::string Wrapped(const std::string& text, std::size_t width, std::size_t hanging)
{
    if (width == 0)
        return text;
    std::istringstream lines(text);
    std::string wrapped;
    for (std::string line; std::getline(lines, line);)
        wrapped += WrappedLine(line, width, hanging);
    return wrapped;
}

} // namespace phnctl
