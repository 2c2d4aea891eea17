// Ids of events. A handset keeps 40 characters of one; longer ids, and those of parts of a series, become ids that are
// the same every time and differ where what they stand for differs. Used by whoever reads or writes a calendar.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace phnctl {

inline constexpr std::size_t kUidUnits = 40;

// The beginning of an id, marked with what it stands for: "fjord40~0123456789abcdef".
std::string MarkedUid(std::string_view uid, std::string_view meaning);

// A series that is stored as several events keeps its id for the first run of occurrences. The runs behind it have
// their number in theirs, the occurrences that were moved the seconds since 1970 of when they would have been.
std::string RunUid(const std::string& uid, std::size_t number);
std::string MovedUid(const std::string& uid, std::int64_t when);

// Which part of which series an id stands for, if it is one of these. The mark is that of the series' whole id.
struct SeriesPart
{
    std::string mark;
    std::string run; // its number; empty: a moved occurrence
};
std::optional<SeriesPart> SeriesPartOf(const std::string& uid);
std::string SeriesMark(const std::string& uid);

} // namespace phnctl
