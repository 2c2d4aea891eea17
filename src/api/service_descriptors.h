// One descriptor per service object of the instance: its slot, its member name as log lines print it, the line that
// reports its creation, and its factory. Creation and deletion walk the descriptors in their two orders; the export
// frame names the slot and its texts by them.
#pragma once

#include <memory>
#include <tuple>

#include "api/plugin_instance.h"

class CCalendarEx;
class CSpeedDialPhonebook;

template <typename T>
struct CServiceDescriptor
{
    CSharedSlot<T> CPluginInstance::*m_pSlot;
    const char* m_pszMember;
    const char* m_pszCreated;
    std::shared_ptr<T> (*m_pfnCreate)();
};

// Null when memory is short. Instantiated beside the instance; TMade is the class that is made, where the slot's class
// is its base.
template <typename T, typename TMade = T>
std::shared_ptr<T> MakeService();

inline constexpr CServiceDescriptor<CSetupInformation> kSetup{
    &CPluginInstance::m_pSetupObject, "m_pSetupObject", "CreateObjects Setup Object", &MakeService<CSetupInformation>};
inline constexpr CServiceDescriptor<CConnectionStatus> kConnectionStatus{
    &CPluginInstance::m_pConnectionStatusObject, "m_pConnectionStatusObject", "CreateObjects Connection Status Object",
    &MakeService<CConnectionStatus>};
inline constexpr CServiceDescriptor<CPhonebook> kPhonebook{&CPluginInstance::m_pPhoneBookObject, "m_pPhoneBookObject",
                                                           "CreateObjects Phonebook Object",
                                                           &MakeService<CPhonebook, CSpeedDialPhonebook>};
inline constexpr CServiceDescriptor<CSMS> kSMS{&CPluginInstance::m_pSMSObject, "m_pSMSObject",
                                               "CreateObjects SMS Object", &MakeService<CSMS>};
inline constexpr CServiceDescriptor<CCalendar> kCalendar{&CPluginInstance::m_pCalendarObject, "m_pCalendarObject",
                                                         "CreateObjects Calendar Object",
                                                         &MakeService<CCalendar, CCalendarEx>};
inline constexpr CServiceDescriptor<CCallHistory> kCallHistory{
    &CPluginInstance::m_pCallHistoryObject, "m_pCallHistoryObject", "CreateObjects Call History Object",
    &MakeService<CCallHistory>};
inline constexpr CServiceDescriptor<CCallback> kCallback{&CPluginInstance::m_pCallbackObject, "m_pCallbackObject",
                                                         "CreateObjects Callback Object", &MakeService<CCallback>};

inline constexpr std::tuple kCreationOrder{kSetup,    kConnectionStatus, kPhonebook, kSMS,
                                           kCalendar, kCallHistory,      kCallback};
inline constexpr std::tuple kDeletionOrder{kCallback, kConnectionStatus, kPhonebook, kSMS, kCalendar,
                                           kSetup,    kCallHistory};
