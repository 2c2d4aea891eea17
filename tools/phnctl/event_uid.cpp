#include "phnctl/event_uid.h"

#include "phnctl/text.h"

#include <cstdint>
#include <fmt/format.h>

namespace phnctl {

std::string MarkedUid(const std::string& uid, const std::string& meaning)
{
    std::uint64_t hash = 0xCBF29CE484222325; // FNV-1a
    for (const char c : meaning)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    std::string begin = CutToUnits(uid, kUidUnits - 17);
    if (!TryToHandset(begin))
        begin.clear();
    return fmt::format("{}~{:016x}", begin, hash);
}

} // namespace phnctl
