#include "phnctl/contact_origin.h"

#include "phnctl/fingerprint.h"

namespace phnctl {

namespace {

constexpr const char* kBegin = "phn-contact-";

} // namespace

std::string OriginOf(const Entry& contact)
{
    return kBegin + Fingerprint(contact.Text());
}

bool IsOrigin(const std::string& uid)
{
    return uid.starts_with(kBegin);
}

} // namespace phnctl
