// Calendar events.
#include "api/export_frame.h"
#include "calendar/calendar.h"

namespace {

// Reading and writing check the record alike, the size before the data.
PHN_ERROR CheckEvent(CExportFrame& Frame, const PHN_EVENT_RECORD* pRecord)
{
    if (!pRecord)
        return Frame.Null("pRecord");
    if (const PHN_ERROR weError = Frame.CheckSize("pRecord", pRecord, "PHN_EVENT_RECORD"))
        return weError;
    if (!pRecord->pCalendarData || !pRecord->uSizeofData)
        return Frame.Fail(PHN_ERROR_INVALID_PARAMETER, "pRecord->pCalendarData is NULL or pRecord->uSizeofData is 0.");
    return PHN_ERROR_NONE;
}

} // namespace

PHN_ERROR PHN_GetEvent(uint32_t uIndex, PHN_EVENT_RECORD* pRecord) noexcept
{
    return Export("PHN_GetEvent", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (const PHN_ERROR weError = CheckEvent(Frame, pRecord))
            return weError;
        std::memset(pRecord->pCalendarData, 0, pRecord->uSizeofData);
        return Frame.Call(kCalendar, "GetEvent", &CCalendar::GetEvent, uIndex, pRecord);
    });
}

PHN_ERROR PHN_SetEvent(uint32_t uIndex, PHN_EVENT_RECORD* pRecord) noexcept
{
    return Export("PHN_SetEvent", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (const PHN_ERROR weError = CheckEvent(Frame, pRecord))
            return weError;
        return Frame.Call(kCalendar, "SetEvent", &CCalendar::SetEvent, uIndex, pRecord);
    });
}

PHN_ERROR PHN_DeleteEvent(uint32_t uIndex) noexcept
{
    return Export("PHN_DeleteEvent", [=](CExportFrame& Frame) {
        return Frame.Call(kCalendar, "DeleteEvent", &CCalendar::DeleteEvent, uIndex);
    });
}

PHN_ERROR PHN_DeleteAllEvents() noexcept
{
    return Export("PHN_DeleteAllEvents", [](CExportFrame& Frame) {
        return Frame.Call(kCalendar, "DeleteAllEvent", &CCalendar::DeleteAllEvents); // as hosts know the line
    });
}
