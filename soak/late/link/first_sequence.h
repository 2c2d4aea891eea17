// Takes the place of src/link/first_sequence.h: the sequence identifiers of each port wrap after some requests.
#pragma once

#include <cstdint>

inline constexpr uint32_t kSequenceBeforeFirst = 0xFFFFFFF0;
