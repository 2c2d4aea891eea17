#include "calendar/calendar.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "link/exchange.h"
#include "link/failure.h"

namespace {

constexpr CLogSource Log{LOG_CCALENDAR};

constexpr ReplySpec kEvents{sizeof(CAL_RET_EVENT_CNT_RES), "CAL_RET_EVENT_CNT_RES("};
constexpr ReplySpec kChanged{sizeof(CAL_RET_RES), "CAL_RET_RES(", "rcCalRetRes.wStatus"};

constexpr ExchangeSpec kGetEvent{"GetEvent", kCommandGetEvent, kEvents, "prcCalRetEvent->dwResult"};
constexpr ExchangeSpec kSetEvent{"SetEvent", kCommandSetEvent, kChanged, "rcCalRetRes.dwResult"};
constexpr ExchangeSpec kDeleteEvent{"DeleteEvent", kCommandDeleteEvent, kChanged, "rcCalRetRes.dwResult"};
// Whatever its result is, the handset has carried it out.
constexpr ExchangeSpec kDeleteAllEvents{"DeleteAllEvents", kCommandDeleteAllEvents, kChanged};

// Gives what one of the calendar's allocations returned back to it.
template <typename T, void (CCalendar::*pfnFree)(T*)>
struct CCalendarDeleter
{
    CCalendar* m_pCalendar;
    void operator()(T* pMemory) const { (m_pCalendar->*pfnFree)(pMemory); }
};

template <typename T, void (CCalendar::*pfnFree)(T*)>
using CCalendarPtr = std::unique_ptr<T, CCalendarDeleter<T, pfnFree>>;

// The host's buffer gets the text, or its length if that is all it has room for.
bool DeliverText(const std::string& strCalendar, PHN_EVENT_RECORD* pRecord, PHN_ERROR* pError)
{
    const auto dwLength = static_cast<DWORD>(strCalendar.size());
    const DWORD dwRoom = pRecord->uSizeofData;
    if (dwLength >= dwRoom) {
        pRecord->uSizeofData = dwLength;
        return Fail(Log, pError, PHN_ERROR_BUFFER_TOO_SMALL,
                    "GetEvent - strCalendar.GetLength()(%d, 0x%X) is greater than or equal "
                    "pRecord->uSizeofData(%d, 0x%X).",
                    dwLength, dwLength, dwRoom, dwRoom);
    }
    std::memcpy(pRecord->pCalendarData, strCalendar.c_str(), strCalendar.size() + 1);
    pRecord->uSize = sizeof *pRecord;
    return true;
}

} // namespace

bool CCalendar::GetEvent(HANDLE hDevice, DWORD dwIndex, PHN_EVENT_RECORD* pRecord, PHN_ERROR* pError)
{
    Log.Comment("GetEvent being executed.");
    CExchange Exchange(Log, kGetEvent);
    if (!Exchange.Send(hDevice, AsBytes(dwIndex), pError))
        return false;
    DWORD dwSize = 0;
    const CCalendarPtr<CAL_RET_EVENT, &CCalendar::FreeRetEvent> pRetEvent(AllocRetEvent(&dwSize), {this});
    if (!pRetEvent)
        return Fail(Log, pError, PHN_ERROR_FAILED, "GetEvent - prcCalRetEvent is NULL.");
    if (!Exchange.Check(pError))
        return false;
    const auto Result = Exchange.GetReply().Load<CAL_RET_EVENT_CNT_RES>();
    pRetEvent->dwResult = Result.dwResult;
    pRetEvent->dwNumOfEventInfo = Result.dwNumber;
    std::string strCalendar;
    if (!UnpackEvent(&strCalendar, Exchange.GetReply().GetData(sizeof Result), pRetEvent.get(), pError))
        return false;
    return DeliverText(strCalendar, pRecord, pError);
}

// The first of the reply's events becomes text.
bool CCalendar::UnpackEvent(std::string* pstrCalendar, std::span<const uint8_t> Data, CAL_RET_EVENT* pRetEvent,
                            PHN_ERROR* pError)
{
    const DWORD dwPromised = pRetEvent->dwNumOfEventInfo;
    if (dwPromised == 0)
        return Fail(Log, pError, PHN_ERROR_NOT_FOUND, "GetEvent - prcCalRetEvent->dwNumOfEventInfo = %d(0x%X).",
                    dwPromised, dwPromised);
    // The handset's count is no reason to hold more events than its reply has room for.
    const DWORD dwCount = std::min(dwPromised, static_cast<DWORD>(Data.size() / sizeof(CAL_EVENT_INFO) + 1));
    DWORD dwElementSize = 0;
    const CCalendarPtr<CAL_EVENT_INFO, &CCalendar::FreeEvents> pEvents(AllocEvents(dwCount, &dwElementSize), {this});
    if (!pEvents)
        return Fail(Log, pError, PHN_ERROR_FAILED, "GetEvent - prcCalRetEvent->prcEventInfo is NULL.");
    if (Data.size() < dwElementSize)
        return Fail(Log, pError, PHN_ERROR_FAILED, "GetEvent - The first of %d(0x%X) events is not whole.", dwPromised,
                    dwPromised);
    std::memcpy(pEvents.get(), Data.data(), std::min<size_t>(Data.size(), size_t{dwCount} * dwElementSize));
    pRetEvent->prcEventInfo = pEvents.get();
    if (!NorvikToiCalendar(pstrCalendar, pRetEvent->prcEventInfo))
        return Fail(Log, pError, PHN_ERROR_FAILED, "GetEvent - NorvikToiCalendar returned false.");
    return true;
}

bool CCalendar::SetEvent(HANDLE hDevice, DWORD dwIndex, PHN_EVENT_RECORD* pRecord, PHN_ERROR* pError)
{
    Log.Comment("SetEvent being executed.");
    DWORD dwParamSize = 0;
    const CCalendarPtr<CAL_PARAM, &CCalendar::FreeParam> pParam(AllocParam(&dwParamSize), {this});
    if (!pParam)
        return Fail(Log, pError, PHN_ERROR_FAILED, "SetEvent - prcCalParam is NULL.");
    pParam->dwIndex = dwIndex;
    DWORD dwSize = 0;
    CCalendarPtr<ICAL_PROPERTIES, &CCalendar::FreeProperties> pProperties(AllocProperties(&dwSize), {this});
    if (!pProperties)
        return Fail(Log, pError, PHN_ERROR_FAILED, "SetEvent - piCalProp is NULL.");
    if (!iCalendarToNorvik(&pParam->rcEventInfo, pProperties.get(), pRecord->pCalendarData, pRecord->uSizeofData))
        return Fail(Log, pError, PHN_ERROR_INVALID_PARAMETER, "SetEvent - iCalendarToNorvik returned false.");
    pProperties.reset();
    const std::span<const uint8_t> Request(reinterpret_cast<const uint8_t*>(pParam.get()), dwParamSize);
    if (!CExchange(Log, kSetEvent).Run(hDevice, Request, pError))
        return false;
    pRecord->uSize = sizeof *pRecord;
    return true;
}

bool CCalendar::DeleteEvent(HANDLE hDevice, DWORD dwIndex, PHN_ERROR* pError)
{
    Log.Comment("DeleteEvent being executed.");
    return CExchange(Log, kDeleteEvent).Run(hDevice, AsBytes(dwIndex), pError);
}

bool CCalendar::DeleteAllEvents(HANDLE hDevice, PHN_ERROR* pError)
{
    Log.Comment("DeleteAllEvents being executed.");
    return CExchange(Log, kDeleteAllEvents).Run(hDevice, {}, pError);
}
