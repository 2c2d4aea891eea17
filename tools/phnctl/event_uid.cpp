#include "phnctl/event_uid.h"

#include "phnctl/fingerprint.h"
#include "phnctl/text.h"

namespace phnctl {

std::string MarkedUid(const std::string& uid, const std::string& meaning)
{
    std::string begin = CutToUnits(uid, kUidUnits - 17);
    if (!TryToHandset(begin))
        begin.clear();
    return begin + '~' + Fingerprint(meaning);
}

} // namespace phnctl
