#include "api/export_table.h"

#include <cstdio>

#include "phnnrv.h"

namespace {

constexpr const char* kStatus = "m_pConnectionStatusObject";
constexpr const char* kSetup = "m_pSetupObject";
constexpr const char* kPhonebook = "m_pPhoneBookObject";
constexpr const char* kCalendar = "m_pCalendarObject";
constexpr const char* kSms = "m_pSMSObject";
constexpr const char* kCalls = "m_pCallHistoryObject";
constexpr const char* kCallback = "m_pCallbackObject";

// A name's record says which one was asked for, whatever comes of it; this is what a host's memory is filled with.
constexpr uint32_t kGuarded = 0xAAAAAAAA;

void PHN_CALL Ignore(uint32_t) {}

template <typename Record>
Record* As(void* record)
{
    return static_cast<Record*>(record);
}

// What follows from an export's name, and where it does not.
void Complete(ExportRow& row)
{
    const std::string& name = row.name;
    row.returnsCount = name.ends_with("Count");
    row.method = name == "PHN_SetRadioPower"     ? "SetRadio"
                 : name == "PHN_DeleteAllEvents" ? "DeleteAllEvent"
                                                 : name.substr(4);
    row.nullLine = name == "PHN_GetFirstMessage"     ? "pMessage is NULL or eType is out of range. eType = 4(0x4)."
                   : name == "PHN_GetFirstCallEntry" ? "pEntry is NULL or eType is out of range. eType = 2(0x2)."
                                                     : std::string(row.argument ? row.argument : "") + " is NULL.";
    row.failure = PHN_ERROR_STATUS_12;
    if (row.data == Data::Kept) // what is there to send is no contact, event or message
        row.failure =
            row.member == kSms ? uint32_t{PHN_ERROR_PDU_NOT_DECODABLE} : uint32_t{PHN_ERROR_INVALID_PARAMETER};
    if (name.starts_with("PHN_GetNext")) // nothing is listed
        row.failure = row.member == kSms ? PHN_ERROR_NO_MORE_MESSAGES : PHN_ERROR_NO_MORE_ENTRIES;
    char code[40];
    std::snprintf(code, sizeof code, "weError = %u(0x%X).", row.failure, row.failure);
    row.failureLine = "pInstance->" + row.member + "->" + row.method + " returned false" +
                      (row.returnsCount ? "." : (name == "PHN_ClearCallEntries" ? "" : " with ") + std::string(code));
}

} // namespace

// clang-format off
#define EXPORT(name) reinterpret_cast<decltype(&name)>(find(#name))
#define RECORD(type) #type, sizeof(type)
#define ROW(name, member, argument, record, from, data, ...) \
    {#name, member, argument, RECORD(record), from, data, \
     [call = EXPORT(name)]([[maybe_unused]] void* p) -> uint32_t { return call __VA_ARGS__; }}
#define PLAIN(name, member, ...) \
    {#name, member, nullptr, nullptr, 0, 0, Data::None, \
     [call = EXPORT(name)](void*) -> uint32_t { return call __VA_ARGS__; }}

std::vector<ExportRow> ExportTable(const FindExport& find)
{
    std::vector<ExportRow> rows = {
        ROW(PHN_GetConnectionInfo, kStatus, "pConnectionInfo", PHN_CONNECTION_INFO, 4, Data::None, (As<PHN_CONNECTION_INFO>(p))),
        ROW(PHN_GetNetworkInfo, kStatus, "pNetworkInfo", PHN_NETWORK_INFO, 4, Data::None, (As<PHN_NETWORK_INFO>(p))),
        ROW(PHN_GetBatteryInfo, kStatus, "pBatteryInfo", PHN_BATTERY_INFO, 4, Data::None, (As<PHN_BATTERY_INFO>(p))),
        ROW(PHN_GetDeviceInfo, kSetup, "pDeviceInfo", PHN_DEVICE_INFO, 4, Data::None, (As<PHN_DEVICE_INFO>(p))),
        ROW(PHN_Activate, kSetup, "pActivationData", PHN_ACTIVATION_DATA, 120, Data::None, (As<PHN_ACTIVATION_DATA>(p))),
        PLAIN(PHN_SetRadioPower, kSetup, (1)),
        PLAIN(PHN_SetLock, kSetup, (1, "    ")),
        PLAIN(PHN_ChangeLockCode, kSetup, ("0000", "\x01\xFFz9")),
        ROW(PHN_GetParameters, kSetup, "pParameters", PHN_PARAMETERS, 4, Data::None, (As<PHN_PARAMETERS>(p))),
        ROW(PHN_SetParameters, kSetup, "pParameters", PHN_PARAMETERS, 14, Data::None, (As<PHN_PARAMETERS>(p))),
        ROW(PHN_GetFieldSizes, kPhonebook, "pFieldSizes", PHN_FIELD_SIZES, 4, Data::None, (As<PHN_FIELD_SIZES>(p))),
        ROW(PHN_GetContact, kPhonebook, "pRecord", PHN_CONTACT_RECORD, sizeof(PHN_CONTACT_RECORD), Data::Cleared, (0, As<PHN_CONTACT_RECORD>(p))),
        ROW(PHN_SetContact, kPhonebook, "pRecord", PHN_CONTACT_RECORD, sizeof(PHN_CONTACT_RECORD), Data::Kept, (0, As<PHN_CONTACT_RECORD>(p))),
        PLAIN(PHN_DeleteContact, kPhonebook, (0)),
        PLAIN(PHN_DeleteAllContacts, kPhonebook, ()),
        ROW(PHN_GetPictureID, kPhonebook, "pPictureID", PHN_PICTURE_ID, 8, Data::None, (kGuarded, As<PHN_PICTURE_ID>(p))),
        ROW(PHN_GetRingerID, kPhonebook, "pRingTone", PHN_RINGER_ID, 8, Data::None, (kGuarded, As<PHN_RINGER_ID>(p))),
        ROW(PHN_GetGroup, kPhonebook, "pGroup", PHN_GROUP, 8, Data::None, (kGuarded, As<PHN_GROUP>(p))),
        ROW(PHN_GetEvent, kCalendar, "pRecord", PHN_EVENT_RECORD, sizeof(PHN_EVENT_RECORD), Data::Cleared, (0, As<PHN_EVENT_RECORD>(p))),
        ROW(PHN_SetEvent, kCalendar, "pRecord", PHN_EVENT_RECORD, sizeof(PHN_EVENT_RECORD), Data::Kept, (0, As<PHN_EVENT_RECORD>(p))),
        PLAIN(PHN_DeleteEvent, kCalendar, (0)),
        PLAIN(PHN_DeleteAllEvents, kCalendar, ()),
        PLAIN(PHN_GetMessageCount, kSms, (4)),
        ROW(PHN_SendMessage, kSms, "pMessage", PHN_SMS_MESSAGE, sizeof(PHN_SMS_MESSAGE), Data::Kept, (As<PHN_SMS_MESSAGE>(p))),
        ROW(PHN_GetFirstMessage, kSms, "pMessage", PHN_SMS_MESSAGE, sizeof(PHN_SMS_MESSAGE), Data::Cleared, (4, As<PHN_SMS_MESSAGE>(p))),
        ROW(PHN_GetNextMessage, kSms, "pMessage", PHN_SMS_MESSAGE, sizeof(PHN_SMS_MESSAGE), Data::Cleared, (As<PHN_SMS_MESSAGE>(p))),
        ROW(PHN_SaveMessage, kSms, "pMessage", PHN_SMS_MESSAGE, sizeof(PHN_SMS_MESSAGE), Data::Kept, (As<PHN_SMS_MESSAGE>(p))),
        PLAIN(PHN_DeleteMessage, kSms, (0)),
        PLAIN(PHN_DeleteAllMessages, kSms, (4)),
        PLAIN(PHN_SetMessageStatus, kSms, (0, 1)),
        PLAIN(PHN_GetCallEntryCount, kCalls, (2)),
        ROW(PHN_GetFirstCallEntry, kCalls, "pEntry", PHN_CALL_ENTRY, 4, Data::None, (2, As<PHN_CALL_ENTRY>(p))),
        ROW(PHN_GetNextCallEntry, kCalls, "pEntry", PHN_CALL_ENTRY, 4, Data::None, (As<PHN_CALL_ENTRY>(p))),
        PLAIN(PHN_ClearCallEntries, kCalls, (2)),
        PLAIN(PHN_SetCallback, kCallback, (16, Ignore, 0)),
    };
    // clang-format on
    for (ExportRow& row : rows)
        Complete(row);
    return rows;
}
