// What must hold for every input. libFuzzer keeps the input that ends the process here.
#pragma once

#include <cstdlib>

namespace fuzz {

inline void Require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace fuzz
