// Constant tables and the one way to search them. A table is an array of rows whose key is a member; FindSorted is for
// tables whose order has no meaning (prove it with IsSorted in a static_assert), FindFirst for those whose stated order
// decides which of several matching rows counts.
#pragma once

#include <algorithm>
#include <cstddef>

template <typename Row, size_t N, typename Key>
constexpr bool IsSorted(const Row (&Table)[N], Key Row::*pKey)
{
    return std::ranges::adjacent_find(Table, std::ranges::greater_equal{}, pKey) == Table + N;
}

// The row with the key; null if there is none.
template <typename Row, size_t N, typename Key, typename Value>
constexpr const Row* FindSorted(const Row (&Table)[N], Key Row::*pKey, const Value& Wanted)
{
    const Row* pRow = std::ranges::lower_bound(Table, Wanted, std::ranges::less{}, pKey);
    return pRow != Table + N && pRow->*pKey == Wanted ? pRow : nullptr;
}

template <typename Row, size_t N, typename Key, typename Value>
constexpr const Row* FindFirst(const Row (&Table)[N], Key Row::*pKey, const Value& Wanted)
{
    const Row* pRow = std::ranges::find(Table, Wanted, pKey);
    return pRow != Table + N ? pRow : nullptr;
}
