#include "phonebook/index_map.h"

namespace {

constexpr DWORD kRecordLimit = 1000;

} // namespace

bool CIndexMap::IndexToRecordID(DWORD dwIndex, DWORD* pdwRecordID) const
{
    CLock Lock(m_csMaps);
    const auto itRecord = m_mapIndexToRecord.find(dwIndex);
    if (itRecord != m_mapIndexToRecord.end()) {
        *pdwRecordID = itRecord->second;
        return true;
    }
    *pdwRecordID = m_mapRecordToIndex.contains(dwIndex) ? FindFreeRecordID() : dwIndex;
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
    while (dwRecordID < kRecordLimit && m_mapRecordToIndex.contains(dwRecordID))
        ++dwRecordID;
    return dwRecordID;
}

void CIndexMap::AddIndexMapping(DWORD dwIndex, DWORD dwRecordID)
{
    CLock Lock(m_csMaps);
    // In this order: should memory end between the two, the record merely stays taken.
    m_mapRecordToIndex.insert_or_assign(dwRecordID, dwIndex);
    m_mapIndexToRecord.insert_or_assign(dwIndex, dwRecordID);
}

void CIndexMap::RemoveIndexMapping(DWORD dwIndex)
{
    CLock Lock(m_csMaps);
    const auto itRecord = m_mapIndexToRecord.find(dwIndex);
    if (itRecord == m_mapIndexToRecord.end())
        return;
    m_mapRecordToIndex.erase(itRecord->second);
    m_mapIndexToRecord.erase(itRecord);
}

void CIndexMap::RemoveAllMappings()
{
    CLock Lock(m_csMaps);
    m_mapIndexToRecord.clear();
    m_mapRecordToIndex.clear();
}
