// What the hidden window tells the device object: arrival and removal of the handset's interfaces, power events, the
// two timers and the poll message. All of it runs on the thread that loaded the library.
#include <algorithm>
#include <cstddef>

#include <windows.h>

#include <dbt.h>

#include "common/ascii_case.h"
#include "common/lookup.h"
#include "common/scoped_value.h"
#include "link/device.h"
#include "link/interface_list.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_CDEVICE};

constexpr UINT kPollPeriod = 2000;
constexpr UINT kStartDelay = 300;
constexpr UINT kStartRetry = 3000;

// The interface path in a broadcast, lower-cased; empty when there is none.
std::string BroadcastName(const DEV_BROADCAST_DEVICEINTERFACE_A* pInterface)
{
    constexpr size_t uName = offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name);
    if (!pInterface || pInterface->dbcc_size <= uName)
        return {};
    const std::string_view strField(reinterpret_cast<const char*>(pInterface) + uName, pInterface->dbcc_size - uName);
    return LowerCase(strField.substr(0, strField.find('\0')));
}

struct PowerEvent
{
    UINT uEvent;
    const char* pszText;
};

constexpr PowerEvent kPowerEvents[]{
    {PBT_APMQUERYSUSPEND, "CDevice::OnBroadCasting - PBT_APMQUERYSUSPEND"},
    {PBT_APMQUERYSUSPENDFAILED, "CDevice::OnBroadCasting - PBT_APMQUERYSUSPENDFAILED"},
    {PBT_APMSUSPEND, "CDevice::OnBroadCasting - PBT_APMSUSPEND"},
    {PBT_APMRESUMECRITICAL, "CDevice::OnBroadCasting - PBT_APMRESUMECRITICAL"},
    {PBT_APMRESUMESUSPEND, "CDevice::OnBroadCasting - PBT_APMRESUMESUSPEND"},
    {PBT_APMBATTERYLOW, "CDevice::OnBroadCasting - PBT_APMBATTERYLOW"},
    {PBT_APMPOWERSTATUSCHANGE, "CDevice::OnBroadCasting - PBT_APMPOWERSTATUSCHANGE"},
    {PBT_APMOEMEVENT, "CDevice::OnBroadCasting - PBT_APMOEMEVENT"},
    {PBT_APMRESUMEAUTOMATIC, "CDevice::OnBroadCasting - PBT_APMRESUMEAUTOMATIC"},
};
static_assert(IsSorted(kPowerEvents, &PowerEvent::uEvent));

} // namespace

bool CDevice::RegisterNotification()
{
    if (m_hDevNotify)
        return true;
    DEV_BROADCAST_DEVICEINTERFACE_A Filter{};
    Filter.dbcc_size = sizeof Filter;
    Filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    Filter.dbcc_classguid = kDiagnosticInterface;
    m_hDevNotify = RegisterDeviceNotificationA(GetWindow(), &Filter, DEVICE_NOTIFY_WINDOW_HANDLE);
    if (!m_hDevNotify)
        Log.Error("CDevice::RegisterNotification - RegisterDeviceNotification failed. Last error 0x%X", GetLastError());
    return m_hDevNotify != nullptr;
}

void CDevice::UnregisterNotification()
{
    if (m_hDevNotify)
        ::UnregisterDeviceNotification(m_hDevNotify);
    m_hDevNotify = nullptr;
}

UINT_PTR CDevice::StartTimer(UINT_PTR nTimer, UINT uPeriod) const
{
    const UINT_PTR nStarted = SetTimer(GetWindow(), nTimer, uPeriod, nullptr);
    if (!nStarted)
        Log.Error("CDevice - Unable to start timer %d. Last error 0x%X", static_cast<UINT>(nTimer), GetLastError());
    return nStarted;
}

void CDevice::InitPortScanning()
{
    Log.Comment("CDevice::InitPortScanning - Start\n");
    for (int nTry = 0; nTry < 2 && GetWindow() && !m_nStartTimer; ++nTry)
        m_nStartTimer = StartTimer(kStartTimer, kStartDelay);
    Log.Comment("CDevice::InitPortScanning - End\n");
}

void CDevice::UninitPortScanning()
{
    Log.Comment("CDevice::UninitPortScanning - Start\n");
    m_Watch.End();
    Log.Comment("CDevice::UninitPortScanning - End\n");
}

BOOL CDevice::OnDeviceChange(UINT uEvent, const void* pData)
{
    if (uEvent != DBT_DEVICEARRIVAL && uEvent != DBT_DEVICEREMOVECOMPLETE)
        return TRUE; // what comes with other events need not be a record
    const auto* pHeader = static_cast<const DEV_BROADCAST_HDR*>(pData);
    if (pHeader && pHeader->dbch_devicetype != DBT_DEVTYP_DEVICEINTERFACE)
        return TRUE;
    const auto* pInterface = static_cast<const DEV_BROADCAST_DEVICEINTERFACE_A*>(pData);
    if (uEvent == DBT_DEVICEARRIVAL) {
        const std::string strName = BroadcastName(pInterface);
        Log.Comment("CDevice::OnDeviceChange, DBT_DEVICEARRIVAL = %s\n", strName.c_str());
        if (pInterface && IsMakersDevice(strName))
            return OnArrival(pInterface->dbcc_classguid, strName);
    } else {
        const std::string strName = BroadcastName(pInterface);
        Log.Comment("CDevice::OnDeviceChange, DBT_DEVICEREMOVECOMPLETE = %s\n", strName.c_str());
        if (IsMakersDevice(strName))
            OnRemoval(strName);
    }
    return TRUE;
}

BOOL CDevice::OnArrival(const GUID& Class, const std::string& strName)
{
    CCallbackLocks CallbackLocks;
    CLock Lock(g_csDevice);
    if (GetMDMHandle()) {
        if (IsBeingLost() || !(m_bScanning || CheckPort())) {
            m_bWatchPorts = true; // the arriving port may not open
            LoseHandset();
        }
        if (GetMDMHandle()) {
            Log.Comment("CDevice::OnDeviceChange, DBT_DEVICEARRIVAL, port handle not null.");
            return TRUE;
        }
    }
    return OpenArrival(Class, strName);
}

BOOL CDevice::OpenArrival(const GUID& Class, const std::string& strName)
{
    if (IsEqualGUID(Class, kModemInterface)) {
        if (!OpenModemPort(strName)) {
            Log.Error("CDevice::OnDeviceChange, DBT_DEVICEARRIVAL, unable to open modem port.");
            return FALSE;
        }
        NotifyDeviceState(true);
        m_bWatchPorts = false;
        Log.Comment("CDevice::OnDeviceChange, DBT_DEVICEARRIVAL, opened modem port.");
    } else if (IsEqualGUID(Class, kDiagnosticInterface)) {
        if (!OpenDiagPort(strName)) {
            Log.Error("CDevice::OnDeviceChange, DBT_DEVICEARRIVAL, unable to open diag port.");
            return FALSE;
        }
        NotifyDeviceState(true);
        m_bWatchPorts = false;
        Log.Comment("CDevice::OnDeviceChange, DBT_DEVICEARRIVAL, opened diag port.");
    }
    return TRUE;
}

void CDevice::OnRemoval(const std::string& strName)
{
    CCallbackLocks CallbackLocks;
    CLock Lock(g_csDevice);
    const auto pPort = GetPort();
    if (!pPort || pPort->GetPath() != strName)
        return;
    m_bWatchPorts = true;
    LoseHandset();
    if (!GetMDMHandle())
        Log.Comment("CDevice::OnDeviceChange - DBT_DEVICEREMOVECOMPLETE, handle not null");
}

void CDevice::OnTimer(UINT_PTR nTimer)
{
    if (nTimer == kPollTimer && m_nPollTimer && !m_bPolling) {
        CScopedValue Polling(m_bPolling, true);
        if (CDeviceOwner* pOwner = GetDeviceOwner())
            pOwner->PollCallbacks(GetWindow(), GetMDMHandle());
    } else if (nTimer == kStartTimer && m_nStartTimer) {
        StartWatch();
    }
}

// The timer runs on until everything is there by which a handset is noticed.
void CDevice::StartWatch()
{
    const bool bWatched = m_Watch.Start();
    if (!bWatched)
        Log.Error("CDevice::OnTimer - Unable to start the port watch. Last error 0x%X", GetLastError());
    if (RegisterNotification() && bWatched) {
        KillTimer(GetWindow(), kStartTimer);
        m_nStartTimer = 0;
    } else {
        StartTimer(kStartTimer, kStartRetry);
    }
}

void CDevice::OnPollMessage(LPARAM lStart)
{
    if (lStart && !m_nPollTimer) {
        m_nPollTimer = StartTimer(kPollTimer, kPollPeriod);
    } else if (!lStart && m_nPollTimer) {
        KillTimer(GetWindow(), kPollTimer);
        m_nPollTimer = 0;
    }
}

// The scan may be opening a USB handset at this moment: the locks first, and then what is open.
void CDevice::OnSuspend()
{
    CCallbackLocks CallbackLocks;
    CLock Lock(g_csDevice);
    if (!m_bWatchPorts)
        return;
    Log.Comment("CDevice::OnBroadCasting - PBT_APMSUSPEND, disconnecting");
    LoseHandset();
}

BOOL CDevice::OnBroadCasting(UINT uEvent)
{
    const PowerEvent* pEvent = FindSorted(kPowerEvents, &PowerEvent::uEvent, uEvent);
    if (!pEvent) {
        Log.Comment("CDevice::OnBroadCasting - wParam = %d", uEvent);
        return TRUE;
    }
    Log.Comment("%s", pEvent->pszText);
    if (uEvent == PBT_APMSUSPEND)
        OnSuspend();
    return TRUE;
}
