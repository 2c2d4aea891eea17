#include "api/export_table.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

constexpr const char* kStatus = "m_pConnectionStatusObject";
constexpr const char* kSetup = "m_pSetupObject";
constexpr const char* kPhonebook = "m_pPhoneBookObject";
constexpr const char* kCalendar = "m_pCalendarObject";
constexpr const char* kSms = "m_pSMSObject";
constexpr const char* kCalls = "m_pCallHistoryObject";
constexpr const char* kCallback = "m_pCallbackObject";

constexpr const char* kCard =
    "BEGIN:VCARD\nVERSION:3.0\nFN:\xC9mile Alpha\nTEL;TYPE=CELL:123\nEMAIL:a@example.org\nEND:VCARD\n";
constexpr const char* kEvent = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nDESCRIPTION:Drinks\r\n"
                               "DTSTART;TZID=PST:20090327T170102\r\nDTEND;TZID=PST:20090327T190000\r\n"
                               "RRULE:FREQ=MONTHLY;UNTIL=20101231T235958Z;INTERVAL=2;BYDAY=-1FR\r\n"
                               "BEGIN:VALARM\r\nTRIGGER:-P5M\r\nEND:VALARM\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
const std::string kPdu("\x00\x04\x02\x00\x48\x08\x05\x01\x03\x10\x0C\x10", 12); // to "2", the text "A"

template <typename Record>
Record* As(void* record)
{
    return static_cast<Record*>(record);
}

// A name's record says which one was asked for, whatever comes of it: here, the one that it holds.
uint32_t IdIn(const void* record)
{
    return record ? static_cast<const PHN_GROUP*>(record)->dwID : 0;
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
    row.success = name == "PHN_Activate" ? PHN_ERROR_ACTIVATION_STARTED
                  : !row.returnsCount    ? 0
                  : row.member == kSms   ? 5
                                         : 7;
    if (row.data == Data::Kept)
        row.content = row.member == kPhonebook ? kCard : row.member == kCalendar ? kEvent : kPdu;
    char code[40];
    std::snprintf(code, sizeof code, "weError = %u(0x%X).", row.failure, row.failure);
    row.failureLine = "pInstance->" + row.member + "->" + row.method + " returned false" +
                      (row.returnsCount ? "." : (name == "PHN_ClearCallEntries" ? "" : " with ") + std::string(code));
}

} // namespace

void PHN_CALL Ignore(uint32_t) {}

// clang-format off
#define EXPORT(name) reinterpret_cast<decltype(&name)>(find(#name))
#define RECORD(type) #type, sizeof(type)
#define ROW(name, member, argument, record, from, data, ...) \
    {#name, member, argument, RECORD(record), from, data, \
     [call = EXPORT(name)]([[maybe_unused]] void* p) -> uint32_t { return call __VA_ARGS__; }}
#define PLAIN(name, member, ...) \
    {#name, member, nullptr, nullptr, 0, 0, Data::None, \
     [=, call = EXPORT(name)](void*) -> uint32_t { return call __VA_ARGS__; }}

std::vector<ExportRow> ExportTable(const FindExport& find, PHN_CALLBACK_FUNCTION function)
{
    std::vector<ExportRow> rows = {
        ROW(PHN_GetConnectionInfo, kStatus, "pConnectionInfo", PHN_CONNECTION_INFO, 4, Data::None, (As<PHN_CONNECTION_INFO>(p))),
        ROW(PHN_GetNetworkInfo, kStatus, "pNetworkInfo", PHN_NETWORK_INFO, 4, Data::None, (As<PHN_NETWORK_INFO>(p))),
        ROW(PHN_GetBatteryInfo, kStatus, "pBatteryInfo", PHN_BATTERY_INFO, 4, Data::None, (As<PHN_BATTERY_INFO>(p))),
        ROW(PHN_GetDeviceInfo, kSetup, "pDeviceInfo", PHN_DEVICE_INFO, 4, Data::None, (As<PHN_DEVICE_INFO>(p))),
        ROW(PHN_Activate, kSetup, "pActivationData", PHN_ACTIVATION_DATA, 120, Data::None, (As<PHN_ACTIVATION_DATA>(p))),
        PLAIN(PHN_SetRadioPower, kSetup, (1)),
        PLAIN(PHN_SetLock, kSetup, (1, "0000")),
        PLAIN(PHN_ChangeLockCode, kSetup, ("0000", "\x01\xFFz9")),
        ROW(PHN_GetParameters, kSetup, "pParameters", PHN_PARAMETERS, 4, Data::None, (As<PHN_PARAMETERS>(p))),
        ROW(PHN_SetParameters, kSetup, "pParameters", PHN_PARAMETERS, 14, Data::None, (As<PHN_PARAMETERS>(p))),
        ROW(PHN_GetFieldSizes, kPhonebook, "pFieldSizes", PHN_FIELD_SIZES, 4, Data::None, (As<PHN_FIELD_SIZES>(p))),
        ROW(PHN_GetContact, kPhonebook, "pRecord", PHN_CONTACT_RECORD, sizeof(PHN_CONTACT_RECORD), Data::Cleared, (0, As<PHN_CONTACT_RECORD>(p))),
        ROW(PHN_SetContact, kPhonebook, "pRecord", PHN_CONTACT_RECORD, sizeof(PHN_CONTACT_RECORD), Data::Kept, (0, As<PHN_CONTACT_RECORD>(p))),
        PLAIN(PHN_DeleteContact, kPhonebook, (0)),
        PLAIN(PHN_DeleteAllContacts, kPhonebook, ()),
        ROW(PHN_GetPictureID, kPhonebook, "pPictureID", PHN_PICTURE_ID, 8, Data::None, (IdIn(p), As<PHN_PICTURE_ID>(p))),
        ROW(PHN_GetRingerID, kPhonebook, "pRingTone", PHN_RINGER_ID, 8, Data::None, (IdIn(p), As<PHN_RINGER_ID>(p))),
        ROW(PHN_GetGroup, kPhonebook, "pGroup", PHN_GROUP, 8, Data::None, (IdIn(p), As<PHN_GROUP>(p))),
        ROW(PHN_GetEvent, kCalendar, "pRecord", PHN_EVENT_RECORD, sizeof(PHN_EVENT_RECORD), Data::Cleared, (0, As<PHN_EVENT_RECORD>(p))),
        ROW(PHN_SetEvent, kCalendar, "pRecord", PHN_EVENT_RECORD, sizeof(PHN_EVENT_RECORD), Data::Kept, (0, As<PHN_EVENT_RECORD>(p))),
        PLAIN(PHN_DeleteEvent, kCalendar, (0)),
        PLAIN(PHN_DeleteAllEvents, kCalendar, ()),
        PLAIN(PHN_GetMessageCount, kSms, (4)),
        ROW(PHN_SendMessage, kSms, "pMessage", PHN_SMS_MESSAGE, sizeof(PHN_SMS_MESSAGE), Data::Kept, (As<PHN_SMS_MESSAGE>(p))),
        ROW(PHN_GetFirstMessage, kSms, "pMessage", PHN_SMS_MESSAGE, sizeof(PHN_SMS_MESSAGE), Data::Cleared, (4, As<PHN_SMS_MESSAGE>(p))),
        ROW(PHN_GetNextMessage, kSms, "pMessage", PHN_SMS_MESSAGE, sizeof(PHN_SMS_MESSAGE), Data::Cleared, (As<PHN_SMS_MESSAGE>(p))),
        ROW(PHN_SaveMessage, kSms, "pMessage", PHN_SMS_MESSAGE, sizeof(PHN_SMS_MESSAGE), Data::Kept, (As<PHN_SMS_MESSAGE>(p))),
        PLAIN(PHN_SetMessageStatus, kSms, (0, 1)),
        PLAIN(PHN_DeleteMessage, kSms, (0)),
        PLAIN(PHN_DeleteAllMessages, kSms, (4)),
        PLAIN(PHN_GetCallEntryCount, kCalls, (2)),
        ROW(PHN_GetFirstCallEntry, kCalls, "pEntry", PHN_CALL_ENTRY, 4, Data::None, (2, As<PHN_CALL_ENTRY>(p))),
        ROW(PHN_GetNextCallEntry, kCalls, "pEntry", PHN_CALL_ENTRY, 4, Data::None, (As<PHN_CALL_ENTRY>(p))),
        PLAIN(PHN_ClearCallEntries, kCalls, (2)),
        PLAIN(PHN_SetCallback, kCallback, (PHN_CALLBACK_ALL, function, 0)),
    };
    // clang-format on
    for (ExportRow& row : rows)
        Complete(row);
    return rows;
}

uint32_t CallExport(const ExportRow& row, std::string* output)
{
    constexpr size_t kRoom = 4096;
    const auto size = static_cast<uint32_t>(row.content.empty() ? kRoom : row.content.size());
    const auto record = std::make_unique<char[]>(row.size), data = std::make_unique<char[]>(size);
    if (row.argument) {
        const uint32_t begin[] = {static_cast<uint32_t>(row.size), 1};
        std::memcpy(record.get(), begin, sizeof begin);
    }
    std::memcpy(data.get(), row.content.data(), row.content.size());
    char* const pointer = data.get();
    char* const pointerField = record.get() + sizeof size;
    if (row.data != Data::None) {
        std::memcpy(pointerField, &pointer, sizeof pointer);
        std::memcpy(pointerField + sizeof pointer, &size, sizeof size);
    }
    const uint32_t code = row.call(record.get());
    if (row.data != Data::None)
        std::fill_n(pointerField, sizeof pointer, '\0');
    if (row.data == Data::Kept && row.member == kSms) // the index depends on what was stored before
        As<PHN_SMS_MESSAGE>(record.get())->wIndex = 0;
    output->assign(record.get(), row.size);
    output->append(data.get(), row.content.empty() && row.data != Data::None ? size : 0);
    return code;
}
