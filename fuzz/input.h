// The bytes of one fuzz input, taken from the front. What is taken beyond the end is zero, and no more of it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace fuzz {

using Bytes = std::vector<std::uint8_t>;

class Input
{
public:
    explicit Input(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

    bool IsOver() const { return rest_.empty(); }
    std::size_t Left() const { return rest_.size(); }

    std::span<const std::uint8_t> Take(std::size_t count)
    {
        const auto taken = rest_.first(std::min(count, rest_.size()));
        rest_ = rest_.subspan(taken.size());
        return taken;
    }
    std::uint8_t Byte() { return IsOver() ? std::uint8_t{0} : Take(1)[0]; }
    std::uint16_t Word()
    {
        const unsigned low = Byte();
        return static_cast<std::uint16_t>(low | unsigned{Byte()} << 8);
    }
    // As many bytes as a word in front of them says.
    std::span<const std::uint8_t> Field() { return Take(Word()); }

private:
    std::span<const std::uint8_t> rest_;
};

} // namespace fuzz
