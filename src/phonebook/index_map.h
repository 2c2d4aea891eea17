// The two-way map between the host's contact indexes and the handset's record ids, base of the phonebook service. A
// contact that was read or written under an index is found again under it, wherever the handset keeps it. Each method
// takes the map's own lock, a leaf; no caller holds it across an exchange.
#pragma once

#include <unordered_map>

#include <windows.h>

#include "common/lock.h"

class CIndexMap
{
public:
    // True if the index is mapped. Otherwise *pdwRecordID is the index itself, or, if another contact holds that
    // record, a free one.
    bool IndexToRecordID(DWORD dwIndex, DWORD* pdwRecordID) const;

    // The lowest record id below 1000 that no contact holds; 1000 if all are taken.
    DWORD GetFreeRecordID() const;

    // What the index and the record were mapped to before is forgotten.
    void AddIndexMapping(DWORD dwIndex, DWORD dwRecordID);

    void RemoveIndexMapping(DWORD dwIndex);
    void RemoveAllMappings();

private:
    DWORD FindFreeRecordID() const PHN_REQUIRES(m_csMaps);
    void Remove(DWORD dwIndex) PHN_REQUIRES(m_csMaps);

    mutable COwnedCriticalSection m_csMaps;
    // Each is the exact reverse of the other.
    std::unordered_map<DWORD, DWORD> m_mapIndexToRecord PHN_GUARDED_BY(m_csMaps);
    std::unordered_map<DWORD, DWORD> m_mapRecordToIndex PHN_GUARDED_BY(m_csMaps);
};
