#include "phonebook/number_map.h"

#include <algorithm>

// Where the key is, or would be.
size_t CNumberMap::FindPlace(DWORD dwKey) const
{
    if (m_Pairs.empty() || m_Pairs.back().first < dwKey)
        return m_Pairs.size();
    const auto itPlace = std::ranges::lower_bound(m_Pairs, dwKey, {}, &Pair::first);
    return static_cast<size_t>(itPlace - m_Pairs.begin());
}

bool CNumberMap::IsAt(size_t uPlace, DWORD dwKey) const
{
    return uPlace < m_Pairs.size() && m_Pairs[uPlace].first == dwKey;
}

const DWORD* CNumberMap::Find(DWORD dwKey) const
{
    const size_t uPlace = FindPlace(dwKey);
    return IsAt(uPlace, dwKey) ? &m_Pairs[uPlace].second : nullptr;
}

void CNumberMap::Set(DWORD dwKey, DWORD dwValue)
{
    const size_t uPlace = FindPlace(dwKey);
    if (IsAt(uPlace, dwKey))
        m_Pairs[uPlace].second = dwValue;
    else
        m_Pairs.emplace(m_Pairs.begin() + static_cast<std::ptrdiff_t>(uPlace), dwKey, dwValue);
}

void CNumberMap::Remove(DWORD dwKey)
{
    const size_t uPlace = FindPlace(dwKey);
    if (IsAt(uPlace, dwKey))
        m_Pairs.erase(m_Pairs.begin() + static_cast<std::ptrdiff_t>(uPlace));
}
