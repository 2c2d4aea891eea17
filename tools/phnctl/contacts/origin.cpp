#include "phnctl/contacts/origin.h"

#include "phnctl/contacts/contact.h"
#include "phnctl/text/fingerprint.h"

namespace phnctl {

namespace {

constexpr std::string_view kBegin = "phn-contact";

std::string MarkOf(const EntryField& field)
{
    return "-" + Fingerprint(field.property + ':' + field.value).substr(8);
}

} // namespace

std::string OriginOf(const Entry& contact)
{
    std::string uid(kBegin);
    for (const EntryField& field : contact.fields)
        if (field.property == contact_property::kName || IsNumberOrAddress(field.property))
            uid += MarkOf(field);
    return uid;
}

bool IsOrigin(std::string_view uid)
{
    return uid.starts_with(kBegin);
}

bool HadValue(std::string_view uid, const EntryField& field)
{
    return IsOrigin(uid) && uid.find(MarkOf(field)) != std::string_view::npos;
}

} // namespace phnctl
