// A handset that answers what has neither text nor listing with anything: status, setup, names, sizes, what was sent,
// written or deleted. The first byte says which of them is asked for.
#include <cstdlib>
#include <memory>

#include "calendar/calendar_ex.h"
#include "callhistory/call_history.h"
#include "fuzz/fuzz_world.h"
#include "phonebook/speed_dial_phonebook.h"
#include "sms/sms.h"
#include "status/connection_status.h"
#include "status/setup_information.h"

namespace {

template <typename Service, typename Method, typename... Arguments>
void Ask(Method method, Arguments... arguments)
{
    Service service;
    PHN_ERROR error = PHN_ERROR_NONE;
    if (!(service.*method)(fuzz::World::Get().Device(), arguments..., &error) && error == PHN_ERROR_NONE)
        std::abort();
}

// A record in memory of its own, so that writing beyond it is found out.
template <typename Service, typename Record, typename Method, typename... Arguments>
void Read(Method method, Arguments... arguments)
{
    const auto record = std::make_unique<Record>();
    Ask<Service>(method, arguments..., record.get());
}

constexpr void (*kQuestions[])() = {
    [] { Read<CConnectionStatus, PHN_BATTERY_INFO>(&CConnectionStatus::GetBatteryInfo); },
    [] { Read<CConnectionStatus, PHN_NETWORK_INFO>(&CConnectionStatus::GetNetworkInfo); },
    [] { Read<CConnectionStatus, PHN_CONNECTION_INFO>(&CConnectionStatus::GetConnectionInfo); },
    [] { Read<CSetupInformation, PHN_DEVICE_INFO>(&CSetupInformation::GetDeviceInfo); },
    [] { Read<CSetupInformation, PHN_PARAMETERS>(&CSetupInformation::GetParameters); },
    [] { Read<CSetupInformation, PHN_PARAMETERS>(&CSetupInformation::SetParameters); },
    [] { Ask<CSetupInformation>(&CSetupInformation::SetRadio, 1u); },
    [] { Ask<CSetupInformation>(&CSetupInformation::SetLock, 1u, "0000"); },
    [] { Ask<CSetupInformation>(&CSetupInformation::ChangeLockCode, "0000", "1234"); },
    [] { Read<CSpeedDialPhonebook, PHN_FIELD_SIZES>(&CPhonebook::GetFieldSizes); },
    [] { Read<CSpeedDialPhonebook, PHN_PICTURE_ID>(&CPhonebook::GetPictureID, 1u); },
    [] { Read<CSpeedDialPhonebook, PHN_RINGER_ID>(&CPhonebook::GetRingerID, 1u); },
    [] { Read<CSpeedDialPhonebook, PHN_GROUP>(&CPhonebook::GetGroup, 1u); },
    [] { Ask<CSpeedDialPhonebook>(&CPhonebook::DeleteContact, 1u); },
    [] { Ask<CSpeedDialPhonebook>(&CPhonebook::DeleteAllContacts); },
    [] { Ask<CCalendarEx>(&CCalendar::DeleteEvent, 1u); },
    [] { Ask<CCalendarEx>(&CCalendar::DeleteAllEvents); },
    [] { Ask<CSMS>(&CSMS::DeleteMessage, 1u); },
    [] { Ask<CSMS>(&CSMS::DeleteAllMessages, 1); },
    [] { Ask<CSMS>(&CSMS::SetMessageStatus, 1u, 1u); },
    [] { Ask<CCallHistory>(&CCallHistory::ClearCallEntries, 1); },
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    fuzz::World::Get().SetReplies({data + 1, size - 1});
    kQuestions[data[0] % std::size(kQuestions)]();
    return 0;
}
