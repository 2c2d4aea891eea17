#include "fuzz/session/host_calls.h"

#include <cstring>
#include <memory>

#include "fuzz/require.h"
#include "phnnrv.h"

namespace fuzz {
namespace {

Session* callbackSession = nullptr;

constexpr std::uint8_t kNone = 255; // a length: the host gives no text

void PHN_CALL OnCallback(std::uint32_t)
{
    if (callbackSession)
        callbackSession->RunCall();
}

bool IsWithin(PHN_ERROR code, PHN_ERROR first, PHN_ERROR last)
{
    return code >= first && code <= last;
}

// The codes of phnnrv.h; anything else is a code of nobody's.
void CheckCode(PHN_ERROR code)
{
    Require(code <= 2 || IsWithin(code, 100, 104) || code == PHN_ERROR_NO_SERVICE_OBJECT || IsWithin(code, 200, 205) ||
            IsWithin(code, 300, 306) || IsWithin(code, 1000, 1006) || IsWithin(code, 1031, 1040) ||
            IsWithin(code, 1047, 1048) || IsWithin(code, 1063, 1067) || IsWithin(code, 1095, 1108) || code == 1255 ||
            IsWithin(code, 1769, 1775) || IsWithin(code, 1777, 1778));
}

// A record in memory of its own, so that writing beyond it is found out. The input says what the host got wrong.
template <typename Record>
class HostRecord
{
public:
    explicit HostRecord(Session& session)
    {
        const std::uint8_t mistake = session.In().Byte();
        record_->uSize = mistake == 1 ? sizeof(Record) - 1 : sizeof(Record);
        isNull_ = mistake == 2;
        hasBuffer_ = mistake != 3;
    }
    Record* Get() { return isNull_ ? nullptr : record_.get(); }
    Record& operator*() { return *record_; }
    Record* operator->() { return record_.get(); }
    // The host's buffer, or none.
    template <typename Byte>
    Byte* Buffer(const std::unique_ptr<Byte[]>& bytes) const
    {
        return hasBuffer_ ? bytes.get() : nullptr;
    }

private:
    std::unique_ptr<Record> record_ = std::make_unique<Record>();
    bool isNull_;
    bool hasBuffer_;
};

template <PHN_ERROR (*Export)()>
void Plain(Session&)
{
    CheckCode(Export());
}

template <auto Export, typename Record>
void Read(Session& session)
{
    HostRecord<Record> record(session);
    CheckCode(Export(record.Get()));
}

template <auto Export, typename Number>
void Numbered(Session& session)
{
    CheckCode(Export(static_cast<Number>(session.In().Word())));
}

template <std::uint32_t (*Export)(std::int32_t)>
void Count(Session& session)
{
    Export(static_cast<std::int8_t>(session.In().Byte()));
}

template <auto Export, typename Record>
void ReadNumbered(Session& session)
{
    const std::uint16_t number = session.In().Word();
    HostRecord<Record> record(session);
    CheckCode(Export(number, record.Get()));
}

void Give(PHN_CONTACT_RECORD& record, char* text, std::size_t size)
{
    record.pContactData = text;
    record.uSizeofData = static_cast<std::uint32_t>(size);
}

void Give(PHN_EVENT_RECORD& record, char* text, std::size_t size)
{
    record.pCalendarData = text;
    record.uSizeofData = static_cast<std::uint32_t>(size);
}

// A contact or an event; what a success leaves is a text.
template <auto Export, typename Record>
void ReadText(Session& session)
{
    const std::uint16_t number = session.In().Word();
    HostRecord<Record> record(session);
    const std::size_t size = session.In().Word() % 5000u;
    const std::unique_ptr<char[]> buffer(new char[size]);
    Give(*record, record.Buffer(buffer), size);
    const PHN_ERROR code = Export(number, record.Get());
    CheckCode(code);
    Require(code != PHN_ERROR_NONE || std::memchr(buffer.get(), '\0', size));
}

template <auto Export, typename Record>
void WriteText(Session& session)
{
    const std::uint16_t number = session.In().Word();
    HostRecord<Record> record(session);
    const auto text = session.In().Field();
    const std::unique_ptr<char[]> buffer(new char[text.size()]);
    std::ranges::copy(text, buffer.get());
    Give(*record, record.Buffer(buffer), text.size());
    CheckCode(Export(number, record.Get()));
}

template <PHN_ERROR (*Export)(PHN_SMS_MESSAGE*)>
void WriteMessage(Session& session)
{
    HostRecord<PHN_SMS_MESSAGE> record(session);
    const auto pdu = session.In().Field();
    const std::unique_ptr<std::uint8_t[]> buffer(new std::uint8_t[pdu.size()]);
    std::ranges::copy(pdu, buffer.get());
    record->pIS637Data = record.Buffer(buffer);
    record->uSizeofData = static_cast<std::uint32_t>(pdu.size());
    CheckCode(Export(record.Get()));
}

template <typename Export>
void ReadMessage(Session& session, Export&& call)
{
    HostRecord<PHN_SMS_MESSAGE> record(session);
    const std::uint32_t size = session.In().Word() % 1000;
    const std::unique_ptr<std::uint8_t[]> buffer(new std::uint8_t[size]);
    record->pIS637Data = record.Buffer(buffer);
    record->uSizeofData = size;
    const PHN_ERROR code = call(record.Get());
    CheckCode(code);
    Require(code != PHN_ERROR_NONE || record->uSizeofData <= size);
}

void FirstMessage(Session& session)
{
    const std::int32_t box = static_cast<std::int8_t>(session.In().Byte());
    ReadMessage(session, [&](PHN_SMS_MESSAGE* record) { return PHN_GetFirstMessage(box, record); });
}

void NextMessage(Session& session)
{
    ReadMessage(session, PHN_GetNextMessage);
}

// A lock code with its terminator at its memory's end, or none.
std::unique_ptr<char[]> LockCode(Session& session)
{
    const std::uint8_t length = session.In().Byte();
    if (length == kNone)
        return nullptr;
    const auto code = session.In().Take(length % 8);
    std::unique_ptr<char[]> text(new char[code.size() + 1]());
    std::ranges::copy(code, text.get());
    return text;
}

void SetLock(Session& session)
{
    const std::uint8_t lock = session.In().Byte();
    CheckCode(PHN_SetLock(lock, LockCode(session).get()));
}

void ChangeLockCode(Session& session)
{
    const auto existing = LockCode(session);
    CheckCode(PHN_ChangeLockCode(existing.get(), LockCode(session).get()));
}

void Activate(Session& session)
{
    HostRecord<PHN_ACTIVATION_DATA> record(session);
    record->bAutomatic = session.In().Byte();
    CheckCode(PHN_Activate(record.Get()));
}

void NetworkErrorString(Session& session)
{
    const std::uint16_t code = session.In().Word();
    const std::uint8_t size = session.In().Byte();
    const std::unique_ptr<char[]> buffer(new char[size]);
    CheckCode(PHN_GetNetworkErrorString(code, size == kNone ? nullptr : buffer.get(), size));
}

void SetMessageStatus(Session& session)
{
    const std::uint16_t index = session.In().Word();
    CheckCode(PHN_SetMessageStatus(index, session.In().Byte()));
}

void SetCallback(Session& session)
{
    const std::int32_t type = static_cast<std::int8_t>(session.In().Byte());
    const std::uint8_t bits = session.In().Byte(); // 1: no longer; 2: no function
    CheckCode(PHN_SetCallback(type, bits & 2 ? nullptr : OnCallback, bits & 1));
}

// clang-format off
constexpr HostCall kCalls[] = {
    {"Startup", Plain<PHN_Startup>},
    {"Shutdown", Plain<PHN_Shutdown>},
    {"GetConnectionInfo", Read<PHN_GetConnectionInfo, PHN_CONNECTION_INFO>},
    {"GetNetworkInfo", Read<PHN_GetNetworkInfo, PHN_NETWORK_INFO>},
    {"GetBatteryInfo", Read<PHN_GetBatteryInfo, PHN_BATTERY_INFO>},
    {"GetNetworkErrorString", NetworkErrorString},
    {"GetDeviceInfo", Read<PHN_GetDeviceInfo, PHN_DEVICE_INFO>},
    {"Activate", Activate},
    {"SetRadioPower", Numbered<PHN_SetRadioPower, std::uint32_t>},
    {"SetLock", SetLock},
    {"ChangeLockCode", ChangeLockCode},
    {"GetParameters", Read<PHN_GetParameters, PHN_PARAMETERS>},
    {"SetParameters", Read<PHN_SetParameters, PHN_PARAMETERS>},
    {"GetFieldSizes", Read<PHN_GetFieldSizes, PHN_FIELD_SIZES>},
    {"GetContact", ReadText<PHN_GetContact, PHN_CONTACT_RECORD>},
    {"SetContact", WriteText<PHN_SetContact, PHN_CONTACT_RECORD>},
    {"DeleteContact", Numbered<PHN_DeleteContact, std::uint32_t>},
    {"DeleteAllContacts", Plain<PHN_DeleteAllContacts>},
    {"GetPictureID", ReadNumbered<PHN_GetPictureID, PHN_PICTURE_ID>},
    {"GetRingerID", ReadNumbered<PHN_GetRingerID, PHN_RINGER_ID>},
    {"GetGroup", ReadNumbered<PHN_GetGroup, PHN_GROUP>},
    {"GetEvent", ReadText<PHN_GetEvent, PHN_EVENT_RECORD>},
    {"SetEvent", WriteText<PHN_SetEvent, PHN_EVENT_RECORD>},
    {"DeleteEvent", Numbered<PHN_DeleteEvent, std::uint32_t>},
    {"DeleteAllEvents", Plain<PHN_DeleteAllEvents>},
    {"GetMessageCount", Count<PHN_GetMessageCount>},
    {"SendMessage", WriteMessage<PHN_SendMessage>},
    {"SaveMessage", WriteMessage<PHN_SaveMessage>},
    {"GetFirstMessage", FirstMessage},
    {"GetNextMessage", NextMessage},
    {"DeleteMessage", Numbered<PHN_DeleteMessage, std::uint32_t>},
    {"DeleteAllMessages", Numbered<PHN_DeleteAllMessages, std::int8_t>},
    {"SetMessageStatus", SetMessageStatus},
    {"GetCallEntryCount", Count<PHN_GetCallEntryCount>},
    {"GetFirstCallEntry", ReadNumbered<PHN_GetFirstCallEntry, PHN_CALL_ENTRY>},
    {"GetNextCallEntry", Read<PHN_GetNextCallEntry, PHN_CALL_ENTRY>},
    {"ClearCallEntries", Numbered<PHN_ClearCallEntries, std::int8_t>},
    {"SetCallback", SetCallback},
    {"CheckForUpgrade", Plain<PHN_CheckForUpgrade>},
    {"Tick", [](Session& session) { session.Tick(); }},
    {"Dispatch", [](Session& session) { session.Dispatch(); }},
    {"Arrive", [](Session& session) { session.Arrive(); }},
    {"Remove", [](Session& session) { session.Remove(); }},
    {"Suspend", [](Session& session) { session.Suspend(); }},
};
// clang-format on

} // namespace

std::span<const HostCall> HostCalls()
{
    return kCalls;
}

void SetCallbackSession(Session* session)
{
    callbackSession = session;
}

} // namespace fuzz
