#include "api/plugin_instance.h"

#include <atomic>
#include <new>
#include <tuple>

#include "api/service_descriptors.h"
#include "calendar/calendar_ex.h"
#include "callhistory/call_history.h"
#include "link/device.h"
#include "link/interface_list.h"
#include "log/log.h"
#include "phonebook/speed_dial_phonebook.h"
#include "sms/sms.h"
#include "status/callback.h"
#include "status/connection_status.h"
#include "status/setup_information.h"

namespace {

constexpr CLogSource Log{LOG_PHNNRV};

constinit std::atomic<CPluginInstance*> s_pInstance{nullptr};

template <typename T>
bool CreateService(CPluginInstance& Instance, const CServiceDescriptor<T>& Service)
{
    CSharedSlot<T>& Slot = Instance.*Service.m_pSlot;
    if (Slot.Get())
        return true;
    const std::shared_ptr<T> pService = Service.m_pfnCreate();
    if (!pService)
        return false;
    if (Slot.Adopt(pService))
        Log.Comment("%s", Service.m_pszCreated);
    return true;
}

} // namespace

template <typename T, typename TMade>
std::shared_ptr<T> MakeService()
{
    try {
        return std::make_shared<TMade>();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

template std::shared_ptr<CSetupInformation> MakeService();
template std::shared_ptr<CConnectionStatus> MakeService();
template std::shared_ptr<CPhonebook> MakeService<CPhonebook, CSpeedDialPhonebook>();
template std::shared_ptr<CCalendar> MakeService<CCalendar, CCalendarEx>();
template std::shared_ptr<CSMS> MakeService();
template std::shared_ptr<CCallHistory> MakeService();
template std::shared_ptr<CCallback> MakeService();

namespace {

// Without one no handset is served until the library is loaded again, so what fails for a moment is tried once more. A
// device object that hears of nothing is better than none: it still finds the handset that is there now.
std::shared_ptr<CDevice> MakeDevice()
{
    for (const bool bLast : {false, true}) {
        std::shared_ptr<CDevice> pDevice = MakeService<CDevice, CDevice>();
        if (pDevice && (bLast || pDevice->IsListening()))
            return pDevice;
    }
    return nullptr;
}

} // namespace

CPluginInstance* GetInstance()
{
    return s_pInstance.load();
}

CPluginInstance* CreateInstance()
{
    if (!GetInstance()) {
        auto* pInstance = new CPluginInstance;
        s_pInstance.store(pInstance);
        SetDeviceOwner(pInstance);
    }
    GetInstance()->CreateDeviceObject();
    return GetInstance();
}

void DestroyInstance()
{
    delete GetInstance();
}

CPluginInstance::~CPluginInstance()
{
    {
        CCallbackLocks CallbackLocks;
        DestroyObjects();
    }
    DestroyDeviceObject();
    SetDeviceOwner(nullptr);
    s_pInstance.store(nullptr);
}

bool CPluginInstance::CreateDeviceObject()
{
    if (m_pDeviceObject.Get())
        return true;
    const std::shared_ptr<CDevice> pDevice = MakeDevice();
    if (!pDevice)
        return false;
    m_pDeviceObject.Exchange(pDevice);
    pDevice->ScanforDevices(kDiagnosticInterface);
    pDevice->RegisterNotification(); // the start timer tries it again
    pDevice->InitPortScanning();
    Log.Comment("CreateDeviceObject Device Object");
    return true;
}

void CPluginInstance::DestroyDeviceObject()
{
    const std::shared_ptr<CDevice> pDevice = m_pDeviceObject.Get();
    if (!pDevice)
        return;
    pDevice->UninitPortScanning();
    pDevice->CloseMDMHandle();
    pDevice->UnregisterNotification();
    pDevice->DestroyDeviceWindow();
    m_pDeviceObject.Take();
}

bool CPluginInstance::CreateObjects()
{
    if (!CreateDeviceObject())
        return false;
    return std::apply([this](const auto&... Service) { return (CreateService(*this, Service) && ...); },
                      kCreationOrder);
}

void CPluginInstance::DestroyObjects()
{
    // Before its slot is empty: a host that finds no object any more is called by none.
    if (const auto pCallback = m_pCallbackObject.Get())
        pCallback->Retire();
    std::apply([this](const auto&... Service) { ((this->*Service.m_pSlot).Take(), ...); }, kDeletionOrder);
}

std::shared_ptr<COpenPort> CPluginInstance::GetCurrentPort()
{
    const std::shared_ptr<CDevice> pDevice = m_pDeviceObject.Get();
    return pDevice ? pDevice->GetPort() : nullptr;
}

void CPluginInstance::NotifyDeviceState(bool bConnected)
{
    if (const auto pCallback = m_pCallbackObject.Get())
        pCallback->NotifyDeviceState(bConnected);
}

void CPluginInstance::PollCallbacks(HWND hWnd, HANDLE hDevice)
{
    if (const auto pCallback = m_pCallbackObject.Get())
        pCallback->CallbackTimerFunction(hWnd, hDevice);
}
