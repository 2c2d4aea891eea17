// The call history: counts, reads and clears the handset's call lists. One list of the host, eType 1, is two lists of
// the handset, joined here. Entries are read one at a time, first and next, and the object keeps the place between
// calls. All methods may run on any host threads at once.
#pragma once

#include <cstdint>
#include <span>

#include <windows.h>

#include "common/lock.h"
#include "phnnrv.h"

class CCallHistory
{
public:
    CCallHistory() = default;
    virtual ~CCallHistory() = default;
    CCallHistory(const CCallHistory&) = delete;
    CCallHistory& operator=(const CCallHistory&) = delete;

    // Ends the reading of a list. Of two joined lists the second one's outcome is returned, and the sum of those that
    // could be counted.
    virtual bool GetCallEntryCount(HANDLE hDevice, int32_t eType, uint32_t* puCount);

    // Fills a record that the caller has cleared; PHN_ERROR_NO_MORE_ENTRIES at the end. On false, *pError says why.
    virtual bool GetFirstCallEntry(HANDLE hDevice, int32_t eType, PHN_CALL_ENTRY* pEntry, PHN_ERROR* pError);
    virtual bool GetNextCallEntry(HANDLE hDevice, PHN_CALL_ENTRY* pEntry, PHN_ERROR* pError);

    virtual bool ClearCallEntries(HANDLE hDevice, int32_t eType, PHN_ERROR* pError);

private:
    bool GetCount(HANDLE hDevice, DWORD dwList, uint32_t* puCount, PHN_ERROR* pError);
    bool GetFirstEntry(HANDLE hDevice, DWORD dwList, PHN_CALL_ENTRY* pEntry, PHN_ERROR* pError);
    bool GetEntry(HANDLE hDevice, DWORD dwCommand, std::span<const uint8_t> Parameters, PHN_CALL_ENTRY* pEntry,
                  PHN_ERROR* pError);
    bool ClearEntry(HANDLE hDevice, DWORD dwList, PHN_ERROR* pError);
    void SetList(DWORD dwList);

    COwnedCriticalSection m_csPlace; // a leaf, never held across an exchange
    bool m_bFirstCalled PHN_GUARDED_BY(m_csPlace) = false;
    DWORD m_dwCursor PHN_GUARDED_BY(m_csPlace) = 0; // the id of the entry that was returned last
    DWORD m_dwList PHN_GUARDED_BY(m_csPlace) = 4;
};
