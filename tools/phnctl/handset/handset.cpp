#include "phnctl/handset/handset.h"

#include "phnctl/text/error_names.h"

namespace phnctl {

void Handset::Check(PHN_ERROR code, const std::string& doing) const
{
    if (code == PHN_ERROR_NONE)
        return;
    throw Refusal(ErrorOf(code), doing);
}

} // namespace phnctl
