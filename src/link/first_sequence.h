// Where the sequence identifiers of a newly opened port begin. Apart from the codec, so that what is to run across the
// wrap can be built with another value.
#pragma once

#include <cstdint>

inline constexpr uint32_t kSequenceBeforeFirst = 0;
