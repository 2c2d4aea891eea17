// Byte-packed handset records: the attribute, and the compile-time proof of their layout. Every record states its size
// and one PHN_OFFSET line per field. A packed field is copied to a local before a reference to it is taken.
#pragma once

#include <cstddef>
#include <cstdint>

#define PHN_PACKED __attribute__((packed))
#define PHN_OFFSET(record, field, n) static_assert(offsetof(record, field) == (n))
