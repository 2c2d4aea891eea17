// The two-way map between the host's contact indexes and the handset's record ids, base of the phonebook service. A
// contact that was read or written under an index is found again under it, wherever the handset keeps it. Each method
// takes the map's own lock, a leaf; no caller holds it across an exchange.
#pragma once

#include <windows.h>

#include "common/lock.h"
#include "phonebook/number_map.h"

class CIndexMap
{
public:
    // True if the index is mapped. Otherwise *pdwRecordID is the index itself, or, if another contact holds that
    // record, a free one.
    bool IndexToRecordID(DWORD dwIndex, DWORD* pdwRecordID) const;

    // The lowest record id below 1000 that no contact holds; 1000 if all are taken.
    DWORD GetFreeRecordID() const;

    // Sets the two directions and nothing else. Another index that leads to the record still does: the contact there is
    // what became of its own, while the record of its own number may be anybody's.
    void AddIndexMapping(DWORD dwIndex, DWORD dwRecordID);

    void RemoveIndexMapping(DWORD dwIndex);
    void RemoveAllMappings();

private:
    DWORD FindFreeRecordID() const PHN_REQUIRES(m_csMaps);

    mutable COwnedCriticalSection m_csMaps;
    // Each is the reverse of the other, but that several indexes may lead to one record. Then the record knows the one
    // that was added last, and none once any of them is removed.
    CNumberMap m_mapIndexToRecord PHN_GUARDED_BY(m_csMaps);
    CNumberMap m_mapRecordToIndex PHN_GUARDED_BY(m_csMaps);
};
