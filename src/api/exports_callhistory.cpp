// Call lists. The type PHN_CALL_LIST_NONE is in range, but names no list: it is answered here, without a line.
#include "api/export_frame.h"
#include "callhistory/call_history.h"

namespace {

bool IsCallList(int32_t eType)
{
    return eType >= PHN_CALL_LIST_FIRST && eType <= PHN_CALL_LIST_LAST;
}

} // namespace

uint32_t PHN_GetCallEntryCount(int32_t eType) noexcept
{
    return ExportCount("PHN_GetCallEntryCount", [=](CExportFrame& Frame, uint32_t* puCount) -> PHN_ERROR {
        if (!IsCallList(eType))
            return Frame.OutOfRange("eType is out of range. eType", eType);
        if (const PHN_ERROR weError = Frame.Device())
            return weError;
        if (eType == PHN_CALL_LIST_NONE)
            return PHN_ERROR_NONE;
        return Frame.Count(kCallHistory, "GetCallEntryCount", &CCallHistory::GetCallEntryCount, eType, puCount);
    });
}

PHN_ERROR PHN_GetFirstCallEntry(int32_t eType, PHN_CALL_ENTRY* pEntry) noexcept
{
    return Export("PHN_GetFirstCallEntry", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pEntry || !IsCallList(eType))
            return Frame.OutOfRange("pEntry is NULL or eType is out of range. eType", eType);
        if (const PHN_ERROR weError = Frame.CheckSize("pEntry", pEntry, "PHN_CALL_ENTRY"))
            return weError;
        ClearFrom(pEntry, 4);
        if (const PHN_ERROR weError = Frame.Service(kCallHistory))
            return weError;
        if (eType == PHN_CALL_LIST_NONE)
            return PHN_ERROR_NO_MORE_ENTRIES;
        return Frame.Call(kCallHistory, "GetFirstCallEntry", &CCallHistory::GetFirstCallEntry, eType, pEntry);
    });
}

PHN_ERROR PHN_GetNextCallEntry(PHN_CALL_ENTRY* pEntry) noexcept
{
    return Export("PHN_GetNextCallEntry", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pEntry)
            return Frame.Null("pEntry");
        if (const PHN_ERROR weError = Frame.CheckSize("pEntry", pEntry, "PHN_CALL_ENTRY"))
            return weError;
        ClearFrom(pEntry, 4);
        return Frame.Call(kCallHistory, "GetNextCallEntry", &CCallHistory::GetNextCallEntry, pEntry);
    });
}

PHN_ERROR PHN_ClearCallEntries(int32_t eType) noexcept
{
    return Export("PHN_ClearCallEntries", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!IsCallList(eType))
            return Frame.OutOfRange("eType is out of range. eType", eType);
        if (const PHN_ERROR weError = Frame.Service(kCallHistory))
            return weError;
        if (eType == PHN_CALL_LIST_NONE)
            return PHN_ERROR_INVALID_PARAMETER;
        return Frame.Call(kCallHistory, {"ClearCallEntries", " returned falseweError = "},
                          &CCallHistory::ClearCallEntries, eType);
    });
}
