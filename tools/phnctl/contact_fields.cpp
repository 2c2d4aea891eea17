#include "phnctl/contact_fields.h"

#include "phnctl/number.h"
#include "phnctl/text.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>
#include <vector>

namespace phnctl {

using namespace contact_property;

namespace {

constexpr std::int64_t kNoNumber = -1;

std::string Chosen(const Entry& wanted, const Entry* replaced, const char* property, const char* otherwise)
{
    if (const std::string* value = wanted.Find(property))
        return *value;
    const std::string* value = replaced ? replaced->Find(property) : nullptr;
    return value ? *value : otherwise;
}

bool HasNumber(const Entry& entry, std::int64_t position)
{
    return position >= 1 && position <= std::int64_t{std::size(kNumberProperties)} &&
           entry.Find(kNumberProperties[position - 1]);
}

// The list with zeros for the numbers that the entry does not have.
std::string SpeedDialsOf(const Entry& entry, const std::string& list)
{
    std::string result;
    std::size_t begin = 0;
    for (std::int64_t position = 1; position <= std::int64_t{std::size(kNumberProperties)}; ++position) {
        const std::size_t end = std::min(list.find(',', begin), list.size());
        const std::string number = list.substr(std::min(begin, end), end - std::min(begin, end));
        result += (position > 1 ? "," : "") + (HasNumber(entry, position) && !number.empty() ? number : "0");
        begin = end + 1;
    }
    return result;
}

} // namespace

bool IsId(std::string_view property)
{
    return property == kGroup || property == kPicture || property == kRinger;
}

Entry CompleteContact(const Entry& wanted, const Entry* replaced)
{
    Entry entry;
    for (const EntryField& field : wanted.fields)
        if (!IsId(field.property) && field.property != kDefault && field.property != kSpeedDials)
            entry.fields.push_back(field);
    std::vector<EntryField> settings;
    for (const char* property : {kGroup, kPicture, kRinger})
        settings.push_back({property, Chosen(wanted, replaced, property, "0")});
    const std::string position = Chosen(wanted, replaced, kDefault, "");
    const auto number = ParseNumber(position, std::size(kNumberProperties));
    if (HasNumber(entry, number ? static_cast<std::int64_t>(*number) : kNoNumber))
        settings.push_back({kDefault, position});
    settings.push_back({kSpeedDials, SpeedDialsOf(entry, Chosen(wanted, replaced, kSpeedDials, ""))});
    entry.fields.insert(entry.fields.end(), settings.begin(), settings.end());
    return entry;
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
