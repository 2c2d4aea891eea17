#include "phnctl/cli/report.h"

#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace {

constexpr std::size_t kNarrowestValue = 10;

bool SharesLine(const Section& section, const Field& field, unsigned width)
{
    return width && section.sharesLines && field.label == field.key;
}

std::size_t LabelWidth(const Report& report, unsigned terminal)
{
    std::size_t width = 0;
    for (const Section& section : report.sections)
        for (const Field& field : section.fields)
            if (!SharesLine(section, field, terminal))
                width = std::max(width, field.label.size());
    return width;
}

// Bytes of the longest beginning of `text` that has at most `columns` characters; a whole text's spaces are preferred
// as the place to break.
std::size_t BreakAt(const std::string& text, std::size_t columns)
{
    std::size_t seen = 0;
    std::size_t end = 0;
    std::size_t space = 0;
    for (; end < text.size(); ++end) {
        if ((static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
            continue;
        if (text[end] == ' ')
            space = end;
        if (seen++ == columns)
            return space ? space : end;
    }
    return end;
}

void AppendWrapped(std::string& out, std::string text, std::size_t indent, unsigned width)
{
    const std::size_t room = width > indent + kNarrowestValue ? width - indent : kNarrowestValue;
    while (width) {
        const std::size_t end = BreakAt(text, room);
        out += text.substr(0, end);
        text.erase(0, end + (end < text.size() && text[end] == ' '));
        if (text.empty())
            break;
        out += '\n' + std::string(indent, ' ');
    }
    out += text + '\n';
}

std::string ShownValue(const Field& field)
{
    return field.shown.empty() ? "-" : Printable(field.shown);
}

// Names and values in columns, as many as fit.
void AppendShared(std::string& out, const Section& section, std::size_t indent, unsigned width)
{
    std::vector<std::string> cells;
    std::size_t column = 0;
    for (const Field& field : section.fields)
        if (SharesLine(section, field, width)) {
            cells.push_back(field.label + ' ' + ShownValue(field));
            column = std::max(column, cells.back().size() + 2);
        }
    const std::size_t perLine = std::max<std::size_t>(1, (width - std::min<std::size_t>(indent, width)) / (column + 1));
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const bool isFirst = i % perLine == 0;
        const bool isLast = i % perLine == perLine - 1 || i + 1 == cells.size();
        out +=
            fmt::format("{:{}}{:<{}}{}", "", isFirst ? indent : 0, cells[i], isLast ? 0 : column, isLast ? "\n" : "");
    }
}

} // namespace

Json ToJson(const Report& report)
{
    JsonObject object;
    for (const Section& section : report.sections) {
        JsonObject members;
        for (const Field& field : section.fields)
            members.emplace_back(field.key, field.value);
        if (section.key.empty())
            std::move(members.begin(), members.end(), std::back_inserter(object));
        else
            object.emplace_back(section.key, Json{std::move(members)});
    }
    return {std::move(object)};
}

std::string ToText(const Report& report, unsigned width)
{
    std::string out;
    const std::size_t labelWidth = LabelWidth(report, width);
    for (const Section& section : report.sections) {
        if (!out.empty())
            out += '\n';
        if (!section.title.empty())
            out += section.title + '\n';
        const std::size_t indent = section.title.empty() ? 0 : 2;
        for (const Field& field : section.fields) {
            if (field.label.empty() || SharesLine(section, field, width))
                continue;
            out += fmt::format("{:{}}{:<{}}  ", "", indent, field.label, labelWidth);
            AppendWrapped(out, ShownValue(field), indent + labelWidth + 2, width);
        }
        AppendShared(out, section, indent, width);
    }
    return out;
}

} // namespace phnctl
