// A map from numbers to numbers in one ordered array. Those of contacts come nearly always in their order, and then
// take neither a search nor memory of their own; one that comes out of its order moves those behind it.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include <windows.h>

class CNumberMap
{
public:
    // Null if there is none.
    const DWORD* Find(DWORD dwKey) const;
    bool Contains(DWORD dwKey) const { return Find(dwKey); }

    void Set(DWORD dwKey, DWORD dwValue);
    void Remove(DWORD dwKey);
    void Clear() { m_Pairs.clear(); }

private:
    using Pair = std::pair<DWORD, DWORD>;

    size_t FindPlace(DWORD dwKey) const;
    bool IsAt(size_t uPlace, DWORD dwKey) const;

    std::vector<Pair> m_Pairs; // by the key
};
