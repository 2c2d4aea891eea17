// The words of a control line, taken one after the other.
#pragma once

#include "simulator/script/control.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace simulator {

class Arguments
{
public:
    Arguments(std::string_view line, const Place& place) : rest_(line), place_(place) { SkipSpaces(); }

    bool AtEnd() const { return rest_.empty(); }
    // Up to a space or a tab outside of quotes, which it loses; empty at the end.
    std::string Word();
    // The next word; throws std::invalid_argument when it is no number from `least` to `most`.
    std::uint64_t Number(std::uint64_t least, std::uint64_t most);
    bool NumberIsNext() const;
    // All that is left, as it stands there.
    std::string Rest();
    // The same without quotation marks that enclose all of it.
    std::string Text();

    const Place& Where() const { return place_; }

private:
    void SkipSpaces();

    std::string_view rest_;
    const Place& place_;
};

} // namespace simulator
