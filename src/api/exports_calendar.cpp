// Calendar events.
#include "api/export_frame.h"

namespace {

// Reading and writing check the record alike, the size before the data.
PHN_ERROR CheckEvent(CExportFrame& Frame, const PHN_EVENT_RECORD* pRecord)
{
    if (!pRecord)
        return Frame.Null("pRecord");
    if (pRecord->uSize < sizeof *pRecord)
        return Frame.TooSmall("pRecord", pRecord->uSize, "PHN_EVENT_RECORD", sizeof *pRecord);
    if (!pRecord->pCalendarData || !pRecord->uSizeofData)
        return Frame.Fail(PHN_ERROR_INVALID_PARAMETER, "pRecord->pCalendarData is NULL or pRecord->uSizeofData is 0.");
    return PHN_ERROR_NONE;
}

} // namespace

PHN_ERROR PHN_GetEvent(uint32_t, PHN_EVENT_RECORD* pRecord) noexcept
{
    return Export("PHN_GetEvent", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (const PHN_ERROR weError = CheckEvent(Frame, pRecord))
            return weError;
        std::memset(pRecord->pCalendarData, 0, pRecord->uSizeofData);
        return Frame.Absent(kCalendar);
    });
}

PHN_ERROR PHN_SetEvent(uint32_t, PHN_EVENT_RECORD* pRecord) noexcept
{
    return Export("PHN_SetEvent", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (const PHN_ERROR weError = CheckEvent(Frame, pRecord))
            return weError;
        return Frame.Absent(kCalendar);
    });
}

PHN_ERROR PHN_DeleteEvent(uint32_t) noexcept
{
    return Export("PHN_DeleteEvent", [](CExportFrame& Frame) { return Frame.Absent(kCalendar); });
}

PHN_ERROR PHN_DeleteAllEvents() noexcept
{
    return Export("PHN_DeleteAllEvents", [](CExportFrame& Frame) { return Frame.Absent(kCalendar); });
}
