#include "callhistory/call_history.h"

#include "callhistory/call_records.h"
#include "link/exchange.h"
#include "link/failure.h"

namespace {

constexpr CLogSource Log{LOG_CCALLHISTORY};

constexpr ReplySpec kEntries{sizeof(CH_RET_CNT_RES), "CH_RET_CNT_RES("};
constexpr ReplySpec kCleared{sizeof(DEV_RX_HEADER), "DEV_RX_HEADER("};

constexpr ExchangeSpec kGetCount{"GetCount", kCommandCallEntryCount, kEntries, "rcCHEntry.dwResult"};
constexpr ExchangeSpec kGetEntry{"GetEntry", kCommandVaries, kEntries, "rcCHEntry.dwResult"};
constexpr ExchangeSpec kClearEntry{"ClearEntry", kCommandClearCallEntries, kCleared};

// The two lists of the handset that the host's list 1 joins.
constexpr DWORD kJoinedFirst = 2;
constexpr DWORD kJoinedSecond = 3;

DWORD GetFirstList(int32_t eType)
{
    switch (eType) {
    case 0:
        return 4;
    case 1:
        return kJoinedFirst;
    case 2:
        return 1;
    default:
        return 5;
    }
}

void FillEntry(PHN_CALL_ENTRY* pEntry, const CH_ENTRY& Entry)
{
    Entry.wszEntry100.CopyText(pEntry->szEntryText);
    pEntry->uEntry8 = Entry.dwEntry8 * 1000;
    pEntry->wEntry18 = Entry.wEntry18;
    pEntry->wEntry17 = Entry.byEntry17;
    pEntry->wEntry16 = Entry.byEntry16;
    pEntry->wEntry12 = Entry.byEntry12;
    pEntry->wEntry13 = Entry.byEntry13;
    pEntry->wEntry14 = Entry.wEntry14;
    pEntry->uSize = sizeof *pEntry;
}

} // namespace

bool CCallHistory::GetCallEntryCount(HANDLE hDevice, int32_t eType, uint32_t* puCount)
{
    Log.Comment("GetCallEntryCount being executed.");
    const DWORD dwList = GetFirstList(eType);
    {
        CLock Lock(m_csPlace);
        m_bFirstCalled = false;
        m_dwList = dwList;
    }
    PHN_ERROR weError = PHN_ERROR_NONE; // tells the caller nothing
    *puCount = 0;
    if (!GetCount(hDevice, dwList, puCount, &weError))
        return false;
    if (dwList != kJoinedFirst)
        return true;
    SetList(kJoinedSecond);
    uint32_t uSecond = 0;
    const bool bCounted = GetCount(hDevice, kJoinedSecond, &uSecond, &weError);
    *puCount += uSecond;
    return bCounted;
}

bool CCallHistory::GetFirstCallEntry(HANDLE hDevice, int32_t eType, PHN_CALL_ENTRY* pEntry, PHN_ERROR* pError)
{
    Log.Comment("GetFirstCallEntry being executed.");
    const DWORD dwList = GetFirstList(eType);
    bool bRead = GetFirstEntry(hDevice, dwList, pEntry, pError);
    if (!bRead && *pError == PHN_ERROR_NO_MORE_ENTRIES && dwList == kJoinedFirst)
        bRead = GetFirstEntry(hDevice, kJoinedSecond, pEntry, pError);
    if (!bRead)
        return false;
    CLock Lock(m_csPlace);
    m_bFirstCalled = true;
    return true;
}

bool CCallHistory::GetNextCallEntry(HANDLE hDevice, PHN_CALL_ENTRY* pEntry, PHN_ERROR* pError)
{
    Log.Comment("GetNextCallEntry being executed.");
    bool bFirstCalled = false;
    DWORD adwPlace[] = {0, 0};
    {
        CLock Lock(m_csPlace);
        bFirstCalled = m_bFirstCalled;
        adwPlace[0] = m_dwList;
        adwPlace[1] = m_dwCursor;
    }
    if (!bFirstCalled)
        return Fail(Log, pError, PHN_ERROR_NO_MORE_ENTRIES, "GetNextCallEntry - GetFirstCallEntry was not called.");
    if (GetEntry(hDevice, kCommandNextCallEntry, AsBytes(adwPlace), pEntry, pError))
        return true;
    if (*pError != PHN_ERROR_NO_MORE_ENTRIES || adwPlace[0] != kJoinedFirst)
        return false;
    return GetFirstEntry(hDevice, kJoinedSecond, pEntry, pError);
}

bool CCallHistory::ClearCallEntries(HANDLE hDevice, int32_t eType, PHN_ERROR* pError)
{
    Log.Comment("ClearCallEntries being executed.");
    const DWORD dwList = GetFirstList(eType);
    if (!ClearEntry(hDevice, dwList, pError)) {
        Log.Error("ClearCallEntries - 1st ClearEntry returned false.");
        return false;
    }
    if (dwList == kJoinedFirst && !ClearEntry(hDevice, kJoinedSecond, pError)) {
        Log.Error("ClearCallEntries - 2nd ClearEntry returned false.");
        return false;
    }
    return true;
}

bool CCallHistory::GetCount(HANDLE hDevice, DWORD dwList, uint32_t* puCount, PHN_ERROR* pError)
{
    CExchange Exchange(Log, kGetCount);
    if (!Exchange.Run(hDevice, AsBytes(dwList), pError))
        return false;
    *puCount = Exchange.GetReply().Load<CH_RET_CNT_RES>().dwNumber;
    return true;
}

bool CCallHistory::GetFirstEntry(HANDLE hDevice, DWORD dwList, PHN_CALL_ENTRY* pEntry, PHN_ERROR* pError)
{
    SetList(dwList);
    return GetEntry(hDevice, kCommandFirstCallEntry, AsBytes(dwList), pEntry, pError);
}

// The first entry of the reply reaches the host, and is where the next read goes on; those behind it do not.
bool CCallHistory::GetEntry(HANDLE hDevice, DWORD dwCommand, std::span<const uint8_t> Parameters,
                            PHN_CALL_ENTRY* pEntry, PHN_ERROR* pError)
{
    CExchange Exchange(Log, kGetEntry, dwCommand);
    if (!Exchange.Run(hDevice, Parameters, pError))
        return false;
    const DWORD dwNumOfEntries = Exchange.GetReply().Load<CH_RET_CNT_RES>().dwNumber;
    if (dwNumOfEntries == 0)
        return Fail(Log, pError, PHN_ERROR_NO_MORE_ENTRIES,
                    "GetEntry - rcCHEntry.dwNumOfEntries is less than or equal to 0.");
    CByteReader Reader = Exchange.GetReply().GetReader(sizeof(CH_RET_CNT_RES));
    if (!Reader.Holds(dwNumOfEntries, sizeof(CH_ENTRY)))
        return Fail(Log, pError, PHN_ERROR_NO_MORE_ENTRIES, "GetEntry - dwPtr(%d) is less than data to copy(%d).",
                    Reader.GetRemaining(), uint64_t{dwNumOfEntries} * sizeof(CH_ENTRY));
    CH_ENTRY Entry{};
    Reader.Read(&Entry);
    FillEntry(pEntry, Entry);
    CLock Lock(m_csPlace);
    m_dwCursor = Entry.dwEntryId;
    return true;
}

bool CCallHistory::ClearEntry(HANDLE hDevice, DWORD dwList, PHN_ERROR* pError)
{
    return CExchange(Log, kClearEntry).Run(hDevice, AsBytes(dwList), pError);
}

void CCallHistory::SetList(DWORD dwList)
{
    CLock Lock(m_csPlace);
    m_dwList = dwList;
}
