#include "phnctl/report.h"

#include "phnctl/text.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace {

constexpr std::size_t kNarrowestValue = 10;

std::size_t LabelWidth(const Report& report)
{
    std::size_t width = 0;
    for (const Section& section : report.sections)
        for (const Field& field : section.fields)
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
    const std::size_t labelWidth = LabelWidth(report);
    for (const Section& section : report.sections) {
        if (!out.empty())
            out += '\n';
        if (!section.title.empty())
            out += section.title + '\n';
        const std::size_t indent = section.title.empty() ? 0 : 2;
        for (const Field& field : section.fields) {
            if (field.label.empty())
                continue;
            out += fmt::format("{:{}}{:<{}}  ", "", indent, field.label, labelWidth);
            AppendWrapped(out, field.shown.empty() ? "-" : Printable(field.shown), indent + labelWidth + 2, width);
        }
    }
    return out;
}

} // namespace phnctl
