#include "simulator/recording/made_up.h"

#include <algorithm>

namespace simulator {
namespace {

constexpr int kTries = 100; // a single digit may have no other that is free

struct Range
{
    char16_t first;
    char16_t last;
    char16_t base; // of what stands for them
    std::uint32_t count;
};

// Latin-1 stays Latin-1, which some fields are limited to; a pair of surrogates stays one.
constexpr Range kRanges[] = {{u'0', u'9', u'0', 10},      {u'A', u'Z', u'A', 26},       {u'a', u'z', u'a', 26},
                             {0x80, 0xFF, 0xE0, 23},      {0x100, 0x7FF, 0x3B1, 17},    {0x800, 0xD7FF, 0x4E00, 1024},
                             {0xD800, 0xDBFF, 0xD83D, 1}, {0xDC00, 0xDFFF, 0xDE00, 64}, {0xE000, 0xFFFF, 0x4E00, 1024}};

} // namespace

char16_t MadeUp::Unit(char16_t real)
{
    const auto* const range = std::find_if(std::begin(kRanges), std::end(kRanges),
                                           [&](const Range& one) { return one.first <= real && real <= one.last; });
    return range == std::end(kRanges) ? real : static_cast<char16_t>(range->base + Below(range->count));
}

const std::u16string& MadeUp::Text(const std::u16string& real)
{
    const auto [known, isNew] = texts_.try_emplace(real);
    std::u16string& text = known->second;
    for (int i = 0; isNew && i < kTries && (i == 0 || text == real || taken_.contains(text)); ++i) {
        text.clear();
        for (const char16_t unit : real)
            text.push_back(Unit(unit));
    }
    taken_.insert(text);
    return text;
}

std::uint32_t MadeUp::Number(std::uint32_t real, std::uint32_t largest)
{
    if (real == 0)
        return 0;
    const auto [known, isNew] = numbers_.try_emplace({real, largest});
    std::uint64_t first = 1;
    while (first * 10 <= real)
        first *= 10;
    const std::uint64_t last = std::min<std::uint64_t>(first * 10 - 1, largest);
    for (int i = 0; isNew && i < kTries && (i == 0 || known->second == real); ++i)
        known->second = static_cast<std::uint32_t>(first + Below(static_cast<std::uint32_t>(last - first + 1)));
    return known->second;
}

} // namespace simulator
