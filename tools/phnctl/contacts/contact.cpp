#include "phnctl/contacts/contact.h"

#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>

namespace phnctl {

using namespace contact_property;

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
    constexpr std::string_view kFraming[] = {"BEGIN", "VERSION", "REV", "UID", "END"};
    const std::string whole = FromHandset(text);
    Entry entry;
    for (std::size_t begin = 0; begin < whole.size();) {
        const std::size_t end = std::min(whole.find("\r\n", begin), whole.size());
        const std::string line = whole.substr(begin, end - begin);
        const std::size_t colon = line.find(':');
        const std::string property = line.substr(0, colon);
        if (colon != std::string::npos && colon + 1 < line.size() &&
            std::find(std::begin(kFraming), std::end(kFraming), property) == std::end(kFraming))
            entry.fields.push_back({property, line.substr(colon + 1)});
        begin = end + 2;
    }
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
