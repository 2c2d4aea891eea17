// Counts in words for people: "1 contact", "2 contacts". Used wherever a sentence tells how many there are.
#pragma once

#include <cstddef>
#include <fmt/format.h>
#include <string>

namespace phnctl {

inline std::string Counted(std::size_t count, const std::string& one, const std::string& many)
{
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

// Of words whose plural adds an s.
inline std::string Counted(std::size_t count, const std::string& one)
{
    return Counted(count, one, one + "s");
}

} // namespace phnctl
