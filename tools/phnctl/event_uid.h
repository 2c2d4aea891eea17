// Ids of events. A handset keeps 40 characters of one; longer ids, and those of parts of a series, become ids that are
// the same every time and differ where what they stand for differs. Used by whoever reads or writes a calendar.
#pragma once

#include <string>

namespace phnctl {

inline constexpr std::size_t kUidUnits = 40;

// The beginning of an id, marked with what it stands for.
std::string MarkedUid(const std::string& uid, const std::string& meaning);

} // namespace phnctl
