#include "failures/export_calls.h"

#include <cstring>
#include <memory>
#include <utility>

#include "failures/allocation_faults.h"
#include "phnnrv.h"

namespace {

using allocation_faults::LibraryScope;

constexpr char kCard[] =
    "BEGIN:VCARD\nVERSION:3.0\nFN:\xC9mile Alpha\nTEL;TYPE=CELL:123\nEMAIL:a@example.org\nEND:VCARD\n";
constexpr char kEvent[] = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nDESCRIPTION:Drinks\r\n"
                          "DTSTART;TZID=PST:20090327T170102\r\nDTEND;TZID=PST:20090327T190000\r\n"
                          "RRULE:FREQ=MONTHLY;UNTIL=20101231T235958Z;INTERVAL=2;BYDAY=-1FR\r\n"
                          "BEGIN:VALARM\r\nTRIGGER:-P5M\r\nEND:VALARM\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
constexpr uint8_t kPdu[] = {0, 4, 2, 0x00, 0x48, 8, 5, 1, 3, 0x10, 0x0C, 0x10}; // to "2", the text "A"
constexpr uint32_t kRoom = 4096;
constexpr int32_t kBox = 1;
constexpr int32_t kList = 2;

Told told{};

void PHN_CALL Tell(uint32_t type)
{
    ++(type == PHN_CALLBACK_REMOVED ? told.removals : told.changes);
}

template <typename Record>
std::unique_ptr<Record> NewRecord()
{
    auto record = std::make_unique<Record>();
    std::memset(record.get(), 1, sizeof *record); // every flag is set, every id 0x01010101
    record->uSize = sizeof *record;
    return record;
}

template <typename Record>
void Keep(const Record& record, std::string* output)
{
    output->assign(reinterpret_cast<const char*>(&record), sizeof record);
}

// A record with a buffer that holds this, or that much room. The pointer to it stands right behind uSize.
template <typename Record>
class BufferRecord
{
public:
    BufferRecord(const void* content, size_t size) : buffer_(std::make_unique_for_overwrite<char[]>(size))
    {
        if (content)
            std::memcpy(buffer_.get(), content, size);
        SetPointer(buffer_.get());
        record_->uSizeofData = static_cast<uint32_t>(size);
    }

    Record* Get() { return record_.get(); }
    // All but the pointer, and what was read. The index under which a message was stored depends on those before it.
    void Keep(bool wasRead, std::string* output)
    {
        SetPointer(nullptr);
        if constexpr (requires { record_->wIndex; })
            record_->wIndex = 0;
        ::Keep(*record_, output);
        if (wasRead)
            output->append(buffer_.get(), strnlen(buffer_.get(), kRoom));
    }

private:
    void SetPointer(void* pointer)
    {
        std::memcpy(reinterpret_cast<char*>(record_.get()) + sizeof record_->uSize, &pointer, sizeof pointer);
    }

    std::unique_ptr<char[]> buffer_;
    std::unique_ptr<Record> record_ = NewRecord<Record>();
};

using Contact = BufferRecord<PHN_CONTACT_RECORD>;
using Event = BufferRecord<PHN_EVENT_RECORD>;
using Message = BufferRecord<PHN_SMS_MESSAGE>;

} // namespace

#define CALL_OF(name) const auto call = reinterpret_cast<decltype(&name)>(find(#name))
#define CALLED(...)                                                                                                    \
    ([&] {                                                                                                             \
        const LibraryScope scope;                                                                                      \
        return call __VA_ARGS__;                                                                                       \
    }())
// clang-format off
#define PLAIN(name, success, ...) \
    {#name, success, [](const FindExport& find, std::string*) -> uint32_t { CALL_OF(name); return CALLED(__VA_ARGS__); }}
#define UNSUPPORTED(name) PLAIN(name, PHN_ERROR_NOT_SUPPORTED, ())
#define RECORD(name, success, type, ...) \
    {#name, success, [](const FindExport& find, std::string* output) { \
        CALL_OF(name); const auto p = NewRecord<type>(); const uint32_t code = CALLED(__VA_ARGS__); Keep(*p, output); return code; }}
#define READ(name, type, ...) \
    {#name, 0, [](const FindExport& find, std::string* output) { \
        CALL_OF(name); type r(nullptr, kRoom); const uint32_t code = CALLED(__VA_ARGS__); r.Keep(true, output); return code; }}
#define WRITE(name, type, text, size, ...) \
    {#name, 0, [](const FindExport& find, std::string* output) { \
        CALL_OF(name); type r(text, size); const uint32_t code = CALLED(__VA_ARGS__); r.Keep(false, output); return code; }}

const std::vector<ExportCall>& ExportCalls()
{
    static const std::vector<ExportCall> calls = {
        RECORD(PHN_GetConnectionInfo, 0, PHN_CONNECTION_INFO, (p.get())),
        RECORD(PHN_GetNetworkInfo, 0, PHN_NETWORK_INFO, (p.get())),
        Battery(),
        {"PHN_GetNetworkErrorString", 0, [](const FindExport& find, std::string* output) {
             CALL_OF(PHN_GetNetworkErrorString);
             const auto buffer = std::make_unique<char[]>(128);
             const uint32_t code = CALLED((PHN_NETWORK_ERROR_1X_FADE, buffer.get(), 128));
             output->assign(buffer.get(), 128);
             return code;
         }},
        RECORD(PHN_GetDeviceInfo, 0, PHN_DEVICE_INFO, (p.get())),
        RECORD(PHN_GetParameters, 0, PHN_PARAMETERS, (p.get())),
        RECORD(PHN_GetFieldSizes, 0, PHN_FIELD_SIZES, (p.get())),
        READ(PHN_GetContact, Contact, (1, r.Get())),
        RECORD(PHN_GetPictureID, 0, PHN_PICTURE_ID, (1, p.get())),
        RECORD(PHN_GetRingerID, 0, PHN_RINGER_ID, (1, p.get())),
        RECORD(PHN_GetGroup, 0, PHN_GROUP, (1, p.get())),
        READ(PHN_GetEvent, Event, (1, r.Get())),
        PLAIN(PHN_GetMessageCount, 5, (kBox)),
        READ(PHN_GetFirstMessage, Message, (kBox, r.Get())),
        READ(PHN_GetNextMessage, Message, (r.Get())),
        PLAIN(PHN_GetCallEntryCount, 7, (kList)),
        RECORD(PHN_GetFirstCallEntry, 0, PHN_CALL_ENTRY, (kList, p.get())),
        RECORD(PHN_GetNextCallEntry, 0, PHN_CALL_ENTRY, (p.get())),
        PLAIN(PHN_SetCallback, 0, (PHN_CALLBACK_ALL, Tell, 0)),
        RECORD(PHN_Activate, PHN_ERROR_ACTIVATION_STARTED, PHN_ACTIVATION_DATA, (p.get())),
        PLAIN(PHN_SetRadioPower, 0, (1)), PLAIN(PHN_SetLock, 0, (1, "0000")),
        PLAIN(PHN_ChangeLockCode, 0, ("0000", "0000")),
        RECORD(PHN_SetParameters, 0, PHN_PARAMETERS, (p.get())),
        WRITE(PHN_SetContact, Contact, kCard, sizeof kCard - 1, (150, r.Get())),
        WRITE(PHN_SetEvent, Event, kEvent, sizeof kEvent - 1, (90, r.Get())),
        WRITE(PHN_SendMessage, Message, kPdu, sizeof kPdu, (r.Get())),
        WRITE(PHN_SaveMessage, Message, kPdu, sizeof kPdu, (r.Get())),
        PLAIN(PHN_SetMessageStatus, 0, (1, 1)), PLAIN(PHN_DeleteContact, 0, (1)), PLAIN(PHN_DeleteAllContacts, 0, ()),
        PLAIN(PHN_DeleteEvent, 0, (1)), PLAIN(PHN_DeleteAllEvents, 0, ()), PLAIN(PHN_DeleteMessage, 0, (1)),
        PLAIN(PHN_DeleteAllMessages, 0, (kBox)), PLAIN(PHN_ClearCallEntries, 0, (kList)),
        UNSUPPORTED(PHN_CheckForUpgrade), UNSUPPORTED(PHN_GetLocationInfo), UNSUPPORTED(PHN_GetMassStorageMode),
        UNSUPPORTED(PHN_GetNDISMode), UNSUPPORTED(PHN_PlayRingerID), UNSUPPORTED(PHN_SetCallbackExtended),
        UNSUPPORTED(PHN_SetFieldTest), UNSUPPORTED(PHN_SetLocationMode), UNSUPPORTED(PHN_SetMassStorageMode),
        UNSUPPORTED(PHN_SetNDISMode), UNSUPPORTED(PHN_SetPower), UNSUPPORTED(PHN_SetPowerState),
        UNSUPPORTED(PHN_Upgrade),
    };
    return calls;
}

ExportCall Startup()
{
    return PLAIN(PHN_Startup, 0, ());
}

ExportCall Shutdown()
{
    return PLAIN(PHN_Shutdown, 0, ());
}

ExportCall Battery()
{
    return RECORD(PHN_GetBatteryInfo, 0, PHN_BATTERY_INFO, (p.get()));
}
// clang-format on

Told TakeTold()
{
    return std::exchange(told, {});
}
