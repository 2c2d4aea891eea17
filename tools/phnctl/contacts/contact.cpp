#include "phnctl/contacts/contact.h"

#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>

namespace phnctl {

using namespace contact_property;

namespace {

// The lines of the library's text: BEGIN and VERSION, the name, the values in the order of the handset, and these, from
// the last one on. A line end inside a value makes a line of its own; it is known by having no place in that order.
constexpr std::size_t kBeforeName = 2;
constexpr const char* kBehindValues[] = {"END", kSpeedDials, kDefault, kRinger, kPicture, kGroup, "UID", "REV"};

std::vector<std::string> LinesOf(const std::string& text)
{
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find("\r\n", begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 2;
    }
    return lines;
}

EntryField FieldOf(const std::string& line)
{
    const std::size_t colon = std::min(line.find(':'), line.size());
    return {line.substr(0, colon), line.substr(std::min(colon + 1, line.size()))};
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
    std::vector<std::string> lines = LinesOf(FromHandset(text));
    Entry settings;
    for (const char* property : kBehindValues)
        if (!lines.empty() && FieldOf(lines.back()).property == property) {
            settings.fields.insert(settings.fields.begin(), FieldOf(lines.back()));
            lines.pop_back();
        }
    const std::string* const speedDials = settings.Find(kSpeedDials);
    const bool hasValues = !speedDials || !speedDials->empty(); // the library lists them where there is any
    Entry entry;
    for (std::size_t at = kBeforeName; at < lines.size(); ++at) {
        const EntryField field = FieldOf(lines[at]);
        const bool isName = entry.fields.empty() && field.property == kName;
        if (isName || (hasValues && IsNumberOrAddress(field.property)))
            entry.fields.push_back(field);
        else if (!entry.fields.empty())
            entry.fields.back().value += "\r\n" + lines[at];
    }
    std::ranges::move(settings.fields, std::back_inserter(entry.fields));
    std::erase_if(entry.fields, [](const EntryField& field) {
        return field.value.empty() || field.property == "REV" || field.property == "UID" || field.property == "END";
    });
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
