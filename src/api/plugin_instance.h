// The process-wide instance: owns the device object and the seven service objects, each in a shared slot. The exports
// reach everything through GetInstance(); the link reaches up to it as CDeviceOwner. An export takes its own reference
// from a slot and keeps it until it returns, because a removal of the handset empties the slots at any time.
#pragma once

#include <memory>

#include <windows.h>

#include "common/shared_slot.h"
#include "link/device_owner.h"

class CDevice;
class CConnectionStatus;
class CPhonebook;
class CSMS;
class CSetupInformation;
class CCalendar;
class CCallHistory;
class CCallback;

// Classes of handset models. Only startup uses them: a handset is served if its class is eVerNone.
enum EModelVersion
{
    eVer1,
    eVer2,
    eVer3,
    eVer4,
    eVerNone
};

class CPluginInstance final : public CDeviceOwner
{
public:
    CPluginInstance() = default;
    virtual ~CPluginInstance();
    CPluginInstance(const CPluginInstance&) = delete;
    CPluginInstance& operator=(const CPluginInstance&) = delete;

    // The device object: created and destroyed on the thread that loads and unloads the library.
    bool CreateDeviceObject();
    void DestroyDeviceObject();

    // The service objects. Creation makes those that are missing, and leaves what it made when it returns false.
    bool CreateObjects();
    void DestroyObjects() override PHN_REQUIRES(g_csCallbackPoll, g_csCallbackRemoved);

    // Asks the handset for its model string; eVer1 when it cannot be read.
    EModelVersion GetVersion();

    std::shared_ptr<COpenPort> GetCurrentPort() override;
    void NotifyDeviceState(bool bConnected) override;
    void PollCallbacks(HWND hWnd, HANDLE hDevice) override;

    CSharedSlot<CDevice> m_pDeviceObject;
    CSharedSlot<CConnectionStatus> m_pConnectionStatusObject;
    CSharedSlot<CPhonebook> m_pPhoneBookObject;
    CSharedSlot<CSMS> m_pSMSObject;
    CSharedSlot<CSetupInformation> m_pSetupObject;
    CSharedSlot<CCalendar> m_pCalendarObject;
    CSharedSlot<CCallHistory> m_pCallHistoryObject;
    CSharedSlot<CCallback> m_pCallbackObject;
};

// The instance; null before load and after unload.
CPluginInstance* GetInstance();

// Creates the instance if it is absent, then its device object, without which every export finds no handset.
CPluginInstance* CreateInstance();
void DestroyInstance();
