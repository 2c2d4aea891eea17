#include "status/callback.h"

#include "common/lookup.h"
#include "link/device_window.h"
#include "link/exchange.h"
#include "log/host_check.h"
#include "status/callback_records.h"

namespace {

constexpr CLogSource Log{LOG_CCALLBACK};

constexpr ReplySpec kFlags{sizeof(CB_RET_FLAGS_RES), "CB_RET_FLAGS_RES("};
constexpr ExchangeSpec kGetPhoneVariance{"GetPhoneVariance", kCommandPhoneVariance, kFlags};

enum ECallbackFlag : DWORD
{
    CALLBACK_FLAG_CONNECTION = 0x0001,
    CALLBACK_FLAG_STATE_INFO = 0x0002,
    CALLBACK_FLAG_NETWORK_INFO = 0x0004,
    CALLBACK_FLAG_BATTERY_INFO = 0x0008,
    CALLBACK_FLAG_SMS = 0x0010,
    CALLBACK_FLAG_ACTIVATION = 0x0100,
    CALLBACK_FLAG_REMOVED = 0x0200
};

void LogSetCallback(const char* pszType, uint32_t bRemove)
{
    Log.Comment("SetCallback - %s = %d", pszType, bRemove);
}

} // namespace

// In the order in which all are registered, and in which a tick looks at them.
struct CCallback::SPolledType
{
    int32_t eCallbackType;
    DWORD dwFlag;
    WORD wVariance;
    PHN_CALLBACK_FUNCTION CCallback::*pMember;
    const char* pszType;
    const char* pszFlag;
    const char* pszMember;
};

const CCallback::SPolledType CCallback::kPolledTypes[]{
    {PHN_CALLBACK_CONNECTION_INFO, CALLBACK_FLAG_CONNECTION, kConnectionChanged, &CCallback::m_pfnGetConnectionInfo,
     "PHN_CALLBACK_CONNECTION_INFO", "CALLBACK_FLAG_CONNECTION", "m_pfnGetConnectionInfo"},
    {PHN_CALLBACK_STATE_INFO, CALLBACK_FLAG_STATE_INFO, kStateChanged, &CCallback::m_pfnGetStateInfo,
     "PHN_CALLBACK_STATE_INFO", "CALLBACK_FLAG_STATE_INFO", "m_pfnGetStateInfo"},
    {PHN_CALLBACK_NETWORK_INFO, CALLBACK_FLAG_NETWORK_INFO, kNetworkChanged, &CCallback::m_pfnGetNetworkInfo,
     "PHN_CALLBACK_NETWORK_INFO", "CALLBACK_FLAG_NETWORK_INFO", "m_pfnGetNetworkInfo"},
    {PHN_CALLBACK_BATTERY_INFO, CALLBACK_FLAG_BATTERY_INFO, kBatteryChanged, &CCallback::m_pfnGetBatteryInfo,
     "PHN_CALLBACK_BATTERY_INFO", "CALLBACK_FLAG_BATTERY_INFO", "m_pfnGetBatteryInfo"},
    {PHN_CALLBACK_SMS, CALLBACK_FLAG_SMS, kMessagesChanged, &CCallback::m_pfnGetMessageCount, "PHN_CALLBACK_SMS",
     "CALLBACK_FLAG_SMS", "m_pfnGetMessageCount"},
    {PHN_CALLBACK_ACTIVATION, CALLBACK_FLAG_ACTIVATION, kActivationChanged, &CCallback::m_pfnActivation,
     "PHN_CALLBACK_ACTIVATION", "CALLBACK_FLAG_ACTIVATION", "m_pfnActivation"},
};

CCallback::~CCallback()
{
    if (m_hNotifyWnd && !m_bRetired)
        PostPollMessage(0);
}

bool CCallback::SetCallback(HWND hWnd, HANDLE, int32_t eCallbackType, PHN_CALLBACK_FUNCTION pfnCallback,
                            uint32_t bRemove, PHN_ERROR* pError)
{
    *pError = PHN_ERROR_NONE;
    m_hNotifyWnd = hWnd;
    bool bDone = true;
    if (eCallbackType == PHN_CALLBACK_ALL) {
        for (const SPolledType& Type : kPolledTypes)
            bDone = bDone && SetPolled(Type, pfnCallback, bRemove);
        if (bDone)
            SetRemoved(pfnCallback, bRemove);
    } else if (eCallbackType == PHN_CALLBACK_REMOVED) {
        SetRemoved(pfnCallback, bRemove);
    } else if (const auto* pType = FindFirst(kPolledTypes, &SPolledType::eCallbackType, eCallbackType)) {
        bDone = SetPolled(*pType, pfnCallback, bRemove);
    } else {
        *pError = PHN_ERROR_NOT_SUPPORTED;
        return false;
    }
    CHostCheck::SetAwaited(m_dwFlags ? hWnd : nullptr);
    if (!bDone)
        *pError = PHN_ERROR_FAILED;
    return bDone;
}

bool CCallback::SetPolled(const SPolledType& Type, PHN_CALLBACK_FUNCTION pfnCallback, uint32_t bRemove)
{
    LogSetCallback(Type.pszType, bRemove);
    CLock Lock(g_csCallbackPoll);
    if (!bRemove)
        return RegisterPolled(Type, pfnCallback);
    RemovePolled(Type);
    return true;
}

// False, with nothing registered, when the poll cannot be started.
bool CCallback::RegisterPolled(const SPolledType& Type, PHN_CALLBACK_FUNCTION pfnCallback)
{
    if (m_bRetired)
        return true;
    if (m_dwFlags & Type.dwFlag) {
        CHostCheck::OnRegisteredAgain(Type.eCallbackType, pfnCallback == this->*Type.pMember);
        return true;
    }
    if (m_nPollUsers == 0 && !PostPollMessage(1))
        return false;
    m_dwFlags |= Type.dwFlag;
    ++m_nPollUsers;
    if (!(this->*Type.pMember))
        this->*Type.pMember = pfnCallback;
    return true;
}

void CCallback::RemovePolled(const SPolledType& Type)
{
    if (!(m_dwFlags & Type.dwFlag))
        return;
    m_dwFlags &= ~Type.dwFlag;
    if (m_nPollUsers > 0)
        --m_nPollUsers;
    if (!(this->*Type.pMember))
        return;
    this->*Type.pMember = nullptr;
    if (m_nPollUsers == 0)
        PostPollMessage(0);
}

void CCallback::SetRemoved(PHN_CALLBACK_FUNCTION pfnCallback, uint32_t bRemove)
{
    LogSetCallback("PHN_CALLBACK_REMOVED", bRemove);
    CLock Lock(g_csCallbackRemoved);
    if (bRemove) {
        m_dwFlags &= ~CALLBACK_FLAG_REMOVED;
        m_pfnRemoved = nullptr;
    } else if (m_dwFlags & CALLBACK_FLAG_REMOVED) {
        CHostCheck::OnRegisteredAgain(PHN_CALLBACK_REMOVED, pfnCallback == m_pfnRemoved);
    } else if (!m_bRetired) {
        m_dwFlags |= CALLBACK_FLAG_REMOVED;
        if (!m_pfnRemoved)
            m_pfnRemoved = pfnCallback;
    }
}

bool CCallback::PostPollMessage(LPARAM lStart) const
{
    const HWND hWnd = m_hNotifyWnd;
    SetLastError(ERROR_INVALID_WINDOW_HANDLE); // without a window there is nobody to post to
    if (hWnd && PostMessageA(hWnd, CDeviceWindow::GetPollMessage(), 0, lStart))
        return true;
    Log.Error("CCallback - Unable to post the poll message. Last error 0x%X", GetLastError());
    return false;
}

bool CCallback::GetPhoneVariance(HANDLE hDevice, WORD* pwFlags)
{
    Log.Comment("GetPhoneVariance being executed.");
    CExchange Exchange(Log, kGetPhoneVariance);
    PHN_ERROR weError = PHN_ERROR_NONE;
    if (!Exchange.Run(hDevice, {}, &weError))
        return false;
    *pwFlags = Exchange.GetReply().Load<CB_RET_FLAGS_RES>().wFlags;
    return true;
}

void CCallback::CallbackTimerFunction(HWND hWnd, HANDLE hDevice)
{
    if (!hWnd || !hDevice)
        return;
    WORD wFlags = 0;
    GetPhoneVariance(hDevice, &wFlags); // a failed read is logged, and leaves nothing to call
    for (const SPolledType& Type : kPolledTypes) {
        if (!(m_dwFlags & Type.dwFlag) || !(wFlags & Type.wVariance))
            continue;
        CLock Lock(g_csCallbackPoll);
        const PHN_CALLBACK_FUNCTION pfnCallback = this->*Type.pMember;
        Log.Comment("CallbackTimerFunction - %s bit set with %s = 0x%X", Type.pszFlag, Type.pszMember, pfnCallback);
        if (pfnCallback)
            pfnCallback(static_cast<uint32_t>(Type.eCallbackType));
    }
}

void CCallback::NotifyDeviceState(bool bConnected)
{
    if (bConnected || !(m_dwFlags & CALLBACK_FLAG_REMOVED))
        return;
    CLock Lock(g_csCallbackRemoved);
    const CHostRemoval HostRemoval;
    if (m_pfnRemoved)
        m_pfnRemoved(PHN_CALLBACK_REMOVED);
}

void CCallback::Retire()
{
    if (m_hNotifyWnd && !m_bRetired)
        PostPollMessage(0);
    CHostCheck::SetAwaited(nullptr);
    m_bRetired = true;
    m_dwFlags = 0;
    m_nPollUsers = 0;
    m_pfnRemoved = nullptr;
    for (const SPolledType& Type : kPolledTypes)
        this->*Type.pMember = nullptr;
}
