#include "phonebook/index_map.h"

namespace {

constexpr DWORD kRecordLimit = 1000;

} // namespace

bool CIndexMap::IndexToRecordID(DWORD dwIndex, DWORD* pdwRecordID) const
{
    CLock Lock(m_csMaps);
    if (const DWORD* const pdwMapped = m_mapIndexToRecord.Find(dwIndex)) {
        *pdwRecordID = *pdwMapped;
        return true;
    }
    *pdwRecordID = m_mapRecordToIndex.Contains(dwIndex) ? FindFreeRecordID() : dwIndex;
    return false;
}

DWORD CIndexMap::GetFreeRecordID() const
{
    CLock Lock(m_csMaps);
    return FindFreeRecordID();
}

DWORD CIndexMap::FindFreeRecordID() const
{
    DWORD dwRecordID = 0;
    while (dwRecordID < kRecordLimit && m_mapRecordToIndex.Contains(dwRecordID))
        ++dwRecordID;
    return dwRecordID;
}

void CIndexMap::AddIndexMapping(DWORD dwIndex, DWORD dwRecordID)
{
    CLock Lock(m_csMaps);
    // In this order: should memory end between the two, the record merely stays taken.
    m_mapRecordToIndex.Set(dwRecordID, dwIndex);
    m_mapIndexToRecord.Set(dwIndex, dwRecordID);
}

void CIndexMap::RemoveIndexMapping(DWORD dwIndex)
{
    CLock Lock(m_csMaps);
    const DWORD* const pdwRecordID = m_mapIndexToRecord.Find(dwIndex);
    if (!pdwRecordID)
        return;
    m_mapRecordToIndex.Remove(*pdwRecordID);
    m_mapIndexToRecord.Remove(dwIndex);
}

void CIndexMap::RemoveAllMappings()
{
    CLock Lock(m_csMaps);
    m_mapIndexToRecord.Clear();
    m_mapRecordToIndex.Clear();
}
