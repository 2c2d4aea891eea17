#include "phnctl/contacts/contact.h"

#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>
#include <span>

namespace phnctl {

using namespace contact_property;

namespace {

// The lines of the library's text: BEGIN and VERSION, the name, the values in the order of the handset, and these, from
// the last one on. A line end inside a value makes a line of its own; it is known by having no place in that order.
constexpr std::size_t kBeforeName = 2;
constexpr std::size_t kUsualLines = 24;
constexpr std::size_t kUsualFields = 13;
constexpr std::string_view kBehindValues[] = {"END", kSpeedDials, kDefault, kRinger, kPicture, kGroup, "UID", "REV"};

struct Line
{
    std::string_view text;
    std::size_t colon; // or the text's end

    std::string_view Property() const { return text.substr(0, colon); }
    std::string_view Value() const { return text.substr(std::min(colon + 1, text.size())); }
};

std::vector<Line> LinesOf(std::string_view text)
{
    std::vector<Line> lines;
    lines.reserve(kUsualLines);
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find("\r\n", begin), text.size());
        const std::string_view line = text.substr(begin, end - begin);
        lines.push_back({line, std::min(line.find(':'), line.size())});
        begin = end + 2;
    }
    return lines;
}

// How many of the lines stand in front of those behind the values.
std::size_t CountBeforeSettings(std::span<const Line> lines)
{
    std::size_t count = lines.size();
    for (const std::string_view property : kBehindValues)
        if (count > 0 && lines[count - 1].Property() == property)
            --count;
    return count;
}

bool IsKept(const Line& line)
{
    const std::string_view property = line.Property();
    return !line.Value().empty() && property != "REV" && property != "UID" && property != "END";
}

void Append(const Line& line, std::vector<EntryField>& fields)
{
    fields.push_back({std::string(line.Property()), std::string(line.Value())});
}

} // namespace

bool IsId(std::string_view property)
{
    return property == kGroup || property == kPicture || property == kRinger;
}

bool IsAddress(std::string_view property)
{
    return property == kEmail || property == kEmail2;
}

bool IsNumberOrAddress(std::string_view property)
{
    return IsAddress(property) || NumberPosition(property) != 0;
}

std::vector<EntryField> ValuesOf(const Entry& contact)
{
    std::vector<EntryField> values;
    std::ranges::copy_if(contact.fields, std::back_inserter(values),
                         [](const EntryField& field) { return IsNumberOrAddress(field.property); });
    return values;
}

std::size_t NumberPosition(std::string_view property)
{
    const auto* found = std::find(std::begin(kNumberProperties), std::end(kNumberProperties), property);
    return found == std::end(kNumberProperties) ? 0
                                                : static_cast<std::size_t>(found - std::begin(kNumberProperties)) + 1;
}

bool MayHaveLostText(const Entry& read)
{
    return !CodePageHoldsAll() && std::any_of(read.fields.begin(), read.fields.end(), [](const EntryField& field) {
        return field.value.find('?') != std::string::npos;
    });
}

Entry FromLibraryText(std::string_view text)
{
    const std::string utf8 = FromHandset(text);
    const std::vector<Line> lines = LinesOf(utf8);
    const auto settings = std::span(lines).subspan(CountBeforeSettings(lines));
    // The library lists the speed dials where there is any value.
    const bool hasValues = std::ranges::none_of(
        settings, [](const Line& line) { return line.Property() == kSpeedDials && line.Value().empty(); });
    Entry entry;
    entry.fields.reserve(kUsualFields);
    for (std::size_t at = kBeforeName; at + settings.size() < lines.size(); ++at) {
        const Line& line = lines[at];
        const bool isName = entry.fields.empty() && line.Property() == kName;
        if (isName || (hasValues && IsNumberOrAddress(line.Property())))
            Append(line, entry.fields);
        else if (!entry.fields.empty())
            entry.fields.back().value.append("\r\n").append(line.text);
    }
    std::erase_if(entry.fields, [](const EntryField& field) { return field.value.empty(); });
    for (const Line& line : settings)
        if (IsKept(line))
            Append(line, entry.fields);
    return entry;
}

std::string ToLibraryText(const Entry& entry)
{
    std::string text = "BEGIN:VCARD\r\nVERSION:3.0\r\n";
    if (!entry.Find(kName))
        text += fmt::format("{}:\r\n", kName);
    for (const EntryField& field : entry.fields)
        text += fmt::format("{}:{}\r\n", field.property, field.value);
    return ToHandset(text + "END:VCARD\r\n");
}

} // namespace phnctl
