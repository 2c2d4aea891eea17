// Values that stand for real ones: as long, of the same kinds of characters, and the same for each occurrence. They are
// drawn, not computed from what they stand for, so nothing can be computed back.
#pragma once

#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>

namespace simulator {

class MadeUp
{
public:
    // Letters and digits become others; marks, spaces and controls stay.
    const std::u16string& Text(const std::u16string& real);
    // As many decimal digits, and at most `largest`. 0, which means none, stays.
    std::uint32_t Number(std::uint32_t real, std::uint32_t largest);

private:
    char16_t Unit(char16_t real);
    std::uint32_t Below(std::uint32_t limit) { return static_cast<std::uint32_t>(random_() % limit); }

    std::mt19937 random_;
    std::map<std::u16string, std::u16string> texts_;
    std::set<std::u16string> taken_;
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> numbers_;
};

} // namespace simulator
