#include "phnctl/contacts/card_writer.h"
#include "phnctl/contacts/contact.h"
#include "phnctl/text/content_value.h"

#include <fmt/format.h>
#include <windows.h>

namespace phnctl {

using namespace contact_property;

namespace {

// The property as other programs read it.
std::string PropertyInFile(const std::string& property)
{
    if (property != kMobile2 && property != kEmail2)
        return property;
    return fmt::format("{};{}=2", property == kMobile2 ? kCell : kEmail, kPlaceParameter);
}

void AppendCard(std::string& text, const Entry& contact)
{
    const std::string* name = contact.Find(kName);
    const std::string shown = Escaped(name ? *name : "");
    const std::size_t space = shown.find(' ');
    text += "BEGIN:VCARD\r\nVERSION:3.0\r\n";
    AppendFolded(text, space == std::string::npos
                           ? fmt::format("N:;{};;;", shown)
                           : fmt::format("N:{};{};;;", shown.substr(space + 1), shown.substr(0, space)));
    if (!name)
        text += "FN:\r\n";
    for (const EntryField& field : contact.fields) {
        std::string line = PropertyInFile(field.property) + ':';
        line += field.property == kSpeedDials ? field.value : Escaped(field.value);
        AppendFolded(text, line);
    }
    if (MayHaveLostText(contact))
        text += fmt::format("{}:{}\r\n", kLostText, GetACP());
    text += "END:VCARD\r\n";
}

} // namespace

std::string FileOfContacts(std::span<const StoredEntry> contacts)
{
    std::string text;
    for (const StoredEntry& contact : contacts)
        AppendCard(text, contact.entry);
    return text;
}

} // namespace phnctl
