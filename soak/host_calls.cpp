#include "soak/host_calls.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "phnnrv.h"
#include "support/messages.h"

namespace {

using namespace std::chrono_literals;
using simulator::Phone;

constexpr std::chrono::milliseconds kWrite = 15000ms;
constexpr int kReads = 3;
constexpr DWORD kPollEvery = 2050; // a little more than the poll's period

template <typename Type>
struct Record : Type
{
    Record() : Type{} { this->uSize = sizeof(Type); }
};

// Of a record with a buffer.
struct Buffer
{
    std::array<char, 4096> bytes{};

    char* Begin() { return bytes.data(); }
    std::uint8_t* Octets() { return reinterpret_cast<std::uint8_t*>(bytes.data()); }
    std::uint32_t Size() const { return static_cast<std::uint32_t>(bytes.size()); }
    std::uint32_t Fill(std::string_view text)
    {
        text.copy(bytes.data(), text.size());
        return static_cast<std::uint32_t>(text.size());
    }
};

constexpr std::string_view kCard = "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ola Vik\r\nTEL;TYPE=CELL:5550100\r\nEND:VCARD\r\n";
constexpr std::string_view kEvent =
    "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nDESCRIPTION:Ferry\r\n"
    "DTSTART:20260704T180000\r\nDTEND:20260704T190000\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
constexpr std::string_view
    kPdu("\0\0\2\x10\2\4\5\1\xD5\x56\x85\x08\x08\x11\0\3\x20\0\x10\x08\1\0\xA\1\0\1\4\x10\x14\x8D\x20", 31);

unsigned told = 0;
void PHN_CALL Tell(std::uint32_t)
{
    ++told;
}

// Dispatches until the poll's timer has had its turn: behind a slow handset it is due again at once.
void DispatchPoll()
{
    constexpr WPARAM kPollTimer = 1;
    MSG message{};
    const auto isPoll = [&] { return message.message == WM_TIMER && message.wParam == kPollTimer; };
    while (!isPoll() && PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageA(&message);
}

// Keeps so many calls of the list that the host sees before another one.
void KeepReceived(Phone& phone, int count)
{
    std::erase_if(phone.calls, [&](const auto& call) { return call.second.list == 2 && count-- <= 0; });
}

std::vector<Asked> All(std::initializer_list<std::uint32_t> commands, std::uint32_t failure = PHN_ERROR_FAILED)
{
    std::vector<Asked> exchanges;
    for (const std::uint32_t command : commands)
        exchanges.push_back({command, failure});
    return exchanges;
}

} // namespace

#define EXPORT(name) (*reinterpret_cast<decltype(&name)>(find(#name)))
// A call with a record of this type and nothing else but these arguments before it.
#define READ(name, type, ...)                                                                                          \
    [&call = EXPORT(name)] {                                                                                           \
        Record<type> record;                                                                                           \
        return call(__VA_ARGS__ __VA_OPT__(, ) & record);                                                              \
    }
#define PLAIN(name, ...) [&call = EXPORT(name)] { return call(__VA_ARGS__); }
// A call with a record whose two fields lead to a buffer, which holds nothing, or a text.
#define TEXT(name, type, data, size, ...)                                                                              \
    [&call = EXPORT(name)] {                                                                                           \
        Buffer buffer;                                                                                                 \
        Record<type> record;                                                                                           \
        record.data = buffer.Begin();                                                                                  \
        record.uSizeofData = buffer.size;                                                                              \
        return call(__VA_ARGS__, &record);                                                                             \
    }
#define MESSAGE(name, size, ...)                                                                                       \
    [&call = EXPORT(name)] {                                                                                           \
        Buffer buffer;                                                                                                 \
        Record<PHN_SMS_MESSAGE> record;                                                                                \
        record.pIS637Data = buffer.Octets();                                                                           \
        record.uSizeofData = buffer.size;                                                                              \
        return call(__VA_ARGS__ __VA_OPT__(, ) & record);                                                              \
    }

namespace {

std::vector<HostCall> StatusCalls(const FindExport& find)
{
    return {
        {"PHN_GetConnectionInfo", All({3}), 0, READ(PHN_GetConnectionInfo, PHN_CONNECTION_INFO)},
        {"PHN_GetNetworkInfo", All({4}), 0, READ(PHN_GetNetworkInfo, PHN_NETWORK_INFO)},
        {"PHN_GetBatteryInfo", All({5}), 0, READ(PHN_GetBatteryInfo, PHN_BATTERY_INFO)},
        {"PHN_GetDeviceInfo", All({6}), 0, READ(PHN_GetDeviceInfo, PHN_DEVICE_INFO)},
        {"PHN_Activate", All({45}), PHN_ERROR_ACTIVATION_STARTED,
         [&call = EXPORT(PHN_Activate)] {
             Record<PHN_ACTIVATION_DATA> data;
             data.bAutomatic = 1;
             return call(&data);
         }},
        {"PHN_SetRadioPower", All({8}), 0, PLAIN(PHN_SetRadioPower, 1)},
        {"PHN_SetLock", All({9}), 0, PLAIN(PHN_SetLock, 1, "0000")},
        {"PHN_ChangeLockCode", All({10}), 0, PLAIN(PHN_ChangeLockCode, "0000", "1234")},
        {"PHN_GetParameters", All({12}), 0, READ(PHN_GetParameters, PHN_PARAMETERS)},
        {"PHN_SetParameters", All({13}), 0, READ(PHN_SetParameters, PHN_PARAMETERS)},
    };
}

std::vector<HostCall> StoreCalls(const FindExport& find)
{
    return {
        {"PHN_GetFieldSizes", All({34}), 0, READ(PHN_GetFieldSizes, PHN_FIELD_SIZES)},
        {"PHN_GetContact", All({35}), 0, TEXT(PHN_GetContact, PHN_CONTACT_RECORD, pContactData, Size(), 3)},
        {"PHN_SetContact", All({36}), 0, TEXT(PHN_SetContact, PHN_CONTACT_RECORD, pContactData, Fill(kCard), 3)},
        {.name = "PHN_DeleteContact",
         .exchanges = All({37}),
         .success = 0,
         .call = PLAIN(PHN_DeleteContact, 3),
         .pause = 40ms},
        {"PHN_DeleteAllContacts", All({38}), 0, PLAIN(PHN_DeleteAllContacts)},
        {"PHN_GetPictureID", All({39}), 0, READ(PHN_GetPictureID, PHN_PICTURE_ID, 1)},
        {"PHN_GetRingerID", All({40}), 0, READ(PHN_GetRingerID, PHN_RINGER_ID, 1)},
        {"PHN_GetGroup", All({41}), 0, READ(PHN_GetGroup, PHN_GROUP, 1)},
        {"PHN_GetEvent", All({30}), 0, TEXT(PHN_GetEvent, PHN_EVENT_RECORD, pCalendarData, Size(), 25)},
        {"PHN_SetEvent", All({31}), 0, TEXT(PHN_SetEvent, PHN_EVENT_RECORD, pCalendarData, Fill(kEvent), 25)},
        {"PHN_DeleteEvent", All({32}), 0, PLAIN(PHN_DeleteEvent, 25)},
        {"PHN_DeleteAllEvents", All({33}), 0, PLAIN(PHN_DeleteAllEvents)},
    };
}

std::vector<HostCall> MessageCalls(const FindExport& find)
{
    const std::function<std::uint32_t()> first = MESSAGE(PHN_GetFirstMessage, Size(), 3);
    return {
        {"PHN_GetMessageCount", All({15}, 0), 5, PLAIN(PHN_GetMessageCount, 3)},
        {"PHN_SendMessage", All({16}), 0, MESSAGE(PHN_SendMessage, Fill(kPdu))},
        {"PHN_GetFirstMessage", All({46, 17}), 0, first},
        {"PHN_GetNextMessage", All({18}), 0, MESSAGE(PHN_GetNextMessage, Size()), first},
        {"PHN_SaveMessage", All({19}), 0, MESSAGE(PHN_SaveMessage, Fill(kPdu))},
        {"PHN_DeleteMessage", All({20}), 0, PLAIN(PHN_DeleteMessage, 3)},
        {"PHN_DeleteAllMessages", All({21}), 0, PLAIN(PHN_DeleteAllMessages, 3)},
        {"PHN_SetMessageStatus", All({22}), 0, PLAIN(PHN_SetMessageStatus, 3, 1)},
    };
}

std::vector<HostCall> CallListCalls(const FindExport& find)
{
    const std::function<std::uint32_t()> first = READ(PHN_GetFirstCallEntry, PHN_CALL_ENTRY, 1);
    const auto keep = [](int count) { return [count](Phone& phone) { KeepReceived(phone, count); }; };
    return {
        {"PHN_GetCallEntryCount", All({25, 25}, 0), 13, PLAIN(PHN_GetCallEntryCount, 1)},
        {"PHN_GetFirstCallEntry", All({26, 26}), 0, first, [] {}, keep(0)},
        {"PHN_GetNextCallEntry", All({27, 26}), 0, READ(PHN_GetNextCallEntry, PHN_CALL_ENTRY), first, keep(1)},
        {"PHN_ClearCallEntries", All({28, 28}), 0, PLAIN(PHN_ClearCallEntries, 1)},
    };
}

// A failed exchange of the startup leaves the service ended; the shutdown succeeds anyway.
std::vector<HostCall> ServiceCalls(const FindExport& find)
{
    const auto arrange = [](Phone& phone) { phone.variance = simulator::kBatteryChanged; };
    const auto poll = [&setCallback = EXPORT(PHN_SetCallback)] {
        told = 0;
        setCallback(PHN_CALLBACK_BATTERY_INFO, Tell, 0);
        DispatchPending();
        Sleep(kPollEvery);
        DispatchPoll();
        setCallback(PHN_CALLBACK_BATTERY_INFO, Tell, 1);
        return std::uint32_t{told};
    };
    return {
        {.name = "PHN_Startup",
         .exchanges = {{1, PHN_ERROR_COMMUNICATION}, {6, PHN_ERROR_NOT_SUPPORTED}},
         .success = 0,
         .call = PLAIN(PHN_Startup),
         .pause = 15000ms},
        {"PHN_Shutdown", All({2}, 0), 0, PLAIN(PHN_Shutdown)},
        {.name = "the poll of the callbacks",
         .exchanges = All({49}, 0),
         .success = 1,
         .call = poll,
         .arrange = arrange,
         .pause = std::chrono::milliseconds(kPollEvery)},
    };
}

} // namespace

std::chrono::milliseconds ReadTimeout(std::uint32_t command)
{
    return command == 21 || command == 38 ? 301000ms : 15000ms;
}

std::chrono::milliseconds HostCall::Bound() const
{
    std::chrono::milliseconds bound = pause;
    for (const Asked& asked : exchanges)
        bound += kWrite + kReads * ReadTimeout(asked.command);
    return bound;
}

std::vector<HostCall> HostCalls(const FindExport& find)
{
    std::vector<HostCall> calls;
    for (const auto& group : {StatusCalls, StoreCalls, MessageCalls, CallListCalls, ServiceCalls})
        for (HostCall& call : group(find))
            calls.push_back(std::move(call));
    return calls;
}
