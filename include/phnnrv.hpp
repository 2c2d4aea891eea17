// The C++20 form of phnnrv.h, header-only: a Handset that starts the service and ends it, records that know their size,
// listings as vectors, texts as strings, callbacks as std::function, and a Result where the C functions return a code.
//
// It adds no behaviour to the library's: the conventions of phnnrv.h hold, and its comments say what a record's fields
// mean and which codes a function returns; the function stands in brackets here. Two conventions shape every host: the
// thread that loads the library dispatches window messages, as this header never does (7), and nothing that waits for
// another thread belongs into a callback (9).
//
// Nothing is thrown, except by the standard library when memory runs out.
#ifndef PHNNRV_HPP
#define PHNNRV_HPP

#if __cplusplus < 202002L && !(defined(_MSVC_LANG) && _MSVC_LANG >= 202002L)
#error "phnnrv.hpp needs C++20; phnnrv.h serves older hosts"
#endif

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "phnnrv.h"

namespace phnnrv {

// ---- Prompt reads ---------------------------------------------------------------------------------------------------

// Stands once in a program that is linked with the library, at namespace scope of a source file: on Linux the library
// then ends each read with the reply's last byte and not 10 ms later (docs/hosting.md), whatever the user's registry
// says; PHNNRV_PROMPT_READS=0 in the environment still goes before it. It is part of the program and no call because a
// handset's port may be open before main begins. On Windows it does nothing: the registry's value "Prompt Reads"
// decides there.
#define PHNNRV_PROMPT_READS                                                                                            \
    extern "C" PHNNRV_SEEN_BY_LIBRARY const unsigned phnnrv_prompt_reads;                                              \
    const unsigned phnnrv_prompt_reads = 1

#if defined(_WIN32)
#define PHNNRV_SEEN_BY_LIBRARY
#else
#define PHNNRV_SEEN_BY_LIBRARY __attribute__((visibility("default")))
#endif

// ---- Errors ---------------------------------------------------------------------------------------------------------

// Every code that a function returns and its name in phnnrv.h, in the order of the codes.
#define PHNNRV_NAMED(code) std::pair<PHN_ERROR, const char*>(code, #code)
inline constexpr std::pair<PHN_ERROR, const char*> kErrorNames[] = {
    // clang-format off
    PHNNRV_NAMED(PHN_ERROR_NONE), PHNNRV_NAMED(PHN_ERROR_INVALID_PARAMETER), PHNNRV_NAMED(PHN_ERROR_STATUS_12),
    PHNNRV_NAMED(PHN_ERROR_NO_DEVICE), PHNNRV_NAMED(PHN_ERROR_COMMUNICATION), PHNNRV_NAMED(PHN_ERROR_STATUS_7),
    PHNNRV_NAMED(PHN_ERROR_NOT_SUPPORTED), PHNNRV_NAMED(PHN_ERROR_FAILED), PHNNRV_NAMED(PHN_ERROR_NO_SERVICE_OBJECT),
    PHNNRV_NAMED(PHN_ERROR_NOT_AUTOMATIC), PHNNRV_NAMED(PHN_ERROR_STATUS_6), PHNNRV_NAMED(PHN_ERROR_STATUS_8),
    PHNNRV_NAMED(PHN_ERROR_INVALID_LOCK_CODE), PHNNRV_NAMED(PHN_ERROR_STATUS_11),
    PHNNRV_NAMED(PHN_ERROR_ACTIVATION_STARTED), PHNNRV_NAMED(PHN_ERROR_BUFFER_TOO_SMALL),
    PHNNRV_NAMED(PHN_ERROR_NO_MORE_MESSAGES), PHNNRV_NAMED(PHN_ERROR_MESSAGE_NOT_FOUND),
    PHNNRV_NAMED(PHN_ERROR_NO_MORE_ENTRIES), PHNNRV_NAMED(PHN_ERROR_NOT_FOUND), PHNNRV_NAMED(PHN_ERROR_RESULT_2),
    PHNNRV_NAMED(PHN_ERROR_RESULT_4), PHNNRV_NAMED(PHN_NETWORK_ERROR_1X_CO_NO_SERVICE),
    PHNNRV_NAMED(PHN_NETWORK_ERROR_1X_CO_ACCESS_FAILURE), PHNNRV_NAMED(PHN_NETWORK_ERROR_1X_CO_CANNOT_ORIGINATE),
    PHNNRV_NAMED(PHN_NETWORK_ERROR_1X_CO_REDIRECTION), PHNNRV_NAMED(PHN_NETWORK_ERROR_1X_CO_HANDOFF),
    PHNNRV_NAMED(PHN_NETWORK_ERROR_1X_CO_IN_PROGRESS), PHNNRV_NAMED(PHN_NETWORK_ERROR_1X_CO_PRIORITY_INBOUND),
    PHNNRV_NAMED(PHN_NETWORK_ERROR_1X_E911_GPS_FIX), PHNNRV_NAMED(PHN_ERROR_RESULT_109),
    PHNNRV_NAMED(PHN_ERROR_RESULT_110), PHNNRV_NAMED(PHN_ERROR_RESULT_111), PHNNRV_NAMED(PHN_ERROR_RESULT_112),
    PHNNRV_NAMED(PHN_ERROR_RESULT_113), PHNNRV_NAMED(PHN_ERROR_RESULT_114), PHNNRV_NAMED(PHN_ERROR_RESULT_115),
    PHNNRV_NAMED(PHN_ERROR_RESULT_116), PHNNRV_NAMED(PHN_ERROR_RESULT_117), PHNNRV_NAMED(PHN_ERROR_RESULT_118),
    PHNNRV_NAMED(PHN_ERROR_RESULT_119), PHNNRV_NAMED(PHN_ERROR_RESULT_120), PHNNRV_NAMED(PHN_ERROR_RESULT_121),
    PHNNRV_NAMED(PHN_ERROR_RESULT_122), PHNNRV_NAMED(PHN_ERROR_RESULT_123), PHNNRV_NAMED(PHN_ERROR_RESULT_124),
    PHNNRV_NAMED(PHN_ERROR_RESULT_125), PHNNRV_NAMED(PHN_ERROR_RESULT_126), PHNNRV_NAMED(PHN_ERROR_RESULT_127),
    PHNNRV_NAMED(PHN_ERROR_RESULT_128), PHNNRV_NAMED(PHN_ERROR_RESULT_129), PHNNRV_NAMED(PHN_ERROR_RESULT_130),
    PHNNRV_NAMED(PHN_ERROR_RESULT_131), PHNNRV_NAMED(PHN_ERROR_RESULT_132), PHNNRV_NAMED(PHN_ERROR_PDU_NO_DESTINATION),
    PHNNRV_NAMED(PHN_ERROR_RESULT_134), PHNNRV_NAMED(PHN_ERROR_PDU_NOT_DECODABLE), PHNNRV_NAMED(PHN_ERROR_RESULT_136),
    PHNNRV_NAMED(PHN_ERROR_RESULT_137), PHNNRV_NAMED(PHN_ERROR_RESULT_138), PHNNRV_NAMED(PHN_ERROR_RESULT_139),
    PHNNRV_NAMED(PHN_ERROR_RESULT_140), PHNNRV_NAMED(PHN_ERROR_RESULT_141), PHNNRV_NAMED(PHN_ERROR_RESULT_142),
    PHNNRV_NAMED(PHN_ERROR_RESULT_143), PHNNRV_NAMED(PHN_ERROR_RESULT_144), PHNNRV_NAMED(PHN_ERROR_RESULT_145),
    PHNNRV_NAMED(PHN_ERROR_RESULT_146), PHNNRV_NAMED(PHN_ERROR_RESULT_147), PHNNRV_NAMED(PHN_ERROR_RESULT_148),
    // clang-format on
};
#undef PHNNRV_NAMED

// Why a call failed.
struct Error
{
    PHN_ERROR code;

    // "PHN_ERROR_NO_DEVICE"; empty for a code that no function returns.
    constexpr std::string_view name() const noexcept
    {
        for (const auto& [known, name] : kErrorNames)
            if (known == code)
                return name;
        return {};
    }
};

// A value, or the error why there is none, with the names of std::expected. Ask which of the two before *, -> or
// error().
template <class T>
class [[nodiscard]] Result
{
    using Value = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

public:
    Result() requires std::is_void_v<T> {}
    Result(Value value) : state_(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : state_(std::in_place_index<1>, error) {}

    bool has_value() const noexcept { return state_.index() == 0; }
    explicit operator bool() const noexcept { return has_value(); }

    Value& operator*() noexcept { return *std::get_if<0>(&state_); }
    const Value& operator*() const noexcept { return *std::get_if<0>(&state_); }
    Value* operator->() noexcept { return std::get_if<0>(&state_); }
    const Value* operator->() const noexcept { return std::get_if<0>(&state_); }
    Error error() const noexcept { return *std::get_if<1>(&state_); }

private:
    std::variant<Value, Error> state_;
};

// ---- Values ---------------------------------------------------------------------------------------------------------

// A record of phnnrv.h, cleared and with its uSize set: Record<PHN_PARAMETERS>.
template <class T>
struct Record : T
{
    Record() noexcept : T{} { this->uSize = sizeof(T); }
};

// The text of a record's field, in the system's ANSI code page: up to the terminating zero, or all of a full field.
template <std::size_t kSize>
std::string Text(const char (&field)[kSize])
{
    return std::string(field, std::find(field, field + kSize, '\0'));
}

struct Message
{
    std::uint16_t index = 0;       // on the handset
    std::vector<std::uint8_t> pdu; // TIA/EIA-637 transport layer; see PHN_SMS_MESSAGE
};

// What a handset tells of. All but the loss are told on the loading thread, within some two seconds.
enum class Change : std::uint32_t
{
    Connection = PHN_CALLBACK_CONNECTION_INFO,
    State = PHN_CALLBACK_STATE_INFO,
    Network = PHN_CALLBACK_NETWORK_INFO,
    Battery = PHN_CALLBACK_BATTERY_INFO,
    Messages = PHN_CALLBACK_SMS,
    Activation = PHN_CALLBACK_ACTIVATION,
    Removed = PHN_CALLBACK_REMOVED, // on any thread: set a flag, and return
};

// ---- The handset ----------------------------------------------------------------------------------------------------

// The service of the one handset that the library serves; have one object of this class in a process at a time. It ends
// the service when it is destroyed. Before Start has succeeded, and again after the loss of the handset, every function
// fails with PHN_ERROR_NO_DEVICE or, when a handset is there, PHN_ERROR_NO_SERVICE_OBJECT.
class Handset
{
public:
    Handset() = default;
    Handset(const Handset&) = delete;
    Handset& operator=(const Handset&) = delete;
    ~Handset()
    {
        PHN_Shutdown(); // from here on nothing is told
        for (std::uint32_t type = 0; type <= PHN_CALLBACK_LAST; ++type)
            Exchange(type, nullptr);
    }

    // Waits up to 15 s for a handset and starts the service, the first time or again [PHN_Startup]. When a function for
    // changes cannot be registered, it ends the service. Call it, and Wait, on the loading thread or while that thread
    // dispatches: on the loading thread it handles an arrival meanwhile, but no message for the windows of the host.
    Result<void> Start()
    {
        if (const PHN_ERROR code = PHN_Startup())
            return Error{code};
        for (std::uint32_t type = 0; type <= PHN_CALLBACK_LAST; ++type) {
            const PHN_ERROR code = Find(type) ? Register(type, 0) : PHN_ERROR{PHN_ERROR_NONE};
            if (code) {
                PHN_Shutdown();
                return Error{code};
            }
        }
        return {};
    }

    // Starts again and again while there is no handset, or one that does not answer yet: until the service has started,
    // a handset is refused, or the limit is over. The last Start may outlast the limit by its 15 s.
    Result<void> Wait(std::chrono::milliseconds limit)
    {
        const auto begin = std::chrono::steady_clock::now();
        for (;;) {
            const Result<void> started = Start();
            const PHN_ERROR code = started ? PHN_ERROR{PHN_ERROR_NONE} : started.error().code;
            const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - begin;
            if ((code != PHN_ERROR_NO_DEVICE && code != PHN_ERROR_COMMUNICATION) || waited >= limit)
                return started;
            std::this_thread::sleep_for(std::chrono::milliseconds(500));
        }
    }

    // Calls the function for each change of that sort, in place of the one before; an empty one ends that, and unless
    // it is called inside a callback, the function before has returned when this returns [PHN_SetCallback]. Before
    // Start, after a loss and after an error it is kept for the next Start. The function must not throw.
    Result<void> On(Change change, std::function<void()> function)
    {
        const auto type = static_cast<std::uint32_t>(change);
        const bool isEnd = !function;
        const Function before =
            Exchange(type, isEnd ? nullptr : std::make_shared<const std::function<void()>>(std::move(function)));
        const PHN_ERROR code = Register(type, isEnd);
        return code == PHN_ERROR_NO_DEVICE || code == PHN_ERROR_NO_SERVICE_OBJECT ? Result<void>() : Done(code);
    }

    // -- Status and identity

    Result<Record<PHN_CONNECTION_INFO>> Connection() const { return Read(PHN_GetConnectionInfo); }
    Result<Record<PHN_NETWORK_INFO>> Network() const { return Read(PHN_GetNetworkInfo); }
    Result<Record<PHN_BATTERY_INFO>> Battery() const { return Read(PHN_GetBatteryInfo); }
    Result<Record<PHN_DEVICE_INFO>> Identity() const { return Read(PHN_GetDeviceInfo); }

    // "PHN_NETWORK_ERROR_1X_FADE, Fade" for PHN_CONNECTION_INFO's uNetworkError [PHN_GetNetworkErrorString].
    // PHN_ERROR_INVALID_PARAMETER: a code without a text, such as 0.
    Result<std::string> NetworkErrorText(std::uint32_t code) const
    {
        char text[128] = {};
        if (const PHN_ERROR error = PHN_GetNetworkErrorString(static_cast<std::int32_t>(code), text, sizeof text))
            return Error{error};
        return Text(text);
    }

    // -- Settings

    // Starts over-the-air provisioning; Change::Activation tells its progress [PHN_Activate].
    Result<void> Activate()
    {
        Record<PHN_ACTIVATION_DATA> data;
        data.bAutomatic = 1;
        const PHN_ERROR code = PHN_Activate(&data);
        return Done(code == PHN_ERROR_ACTIVATION_STARTED ? PHN_ERROR{PHN_ERROR_NONE} : code);
    }

    Result<void> SetRadioPower(bool isOn) { return Done(PHN_SetRadioPower(isOn)); }

    // A lock code has four characters. PHN_ERROR_INVALID_LOCK_CODE: another length, or a wrong code.
    Result<void> SetLock(bool isLocked, const std::string& lockCode)
    {
        return Done(PHN_SetLock(isLocked, lockCode.c_str()));
    }
    Result<void> ChangeLockCode(const std::string& lockCode, const std::string& newLockCode)
    {
        return Done(PHN_ChangeLockCode(lockCode.c_str(), newLockCode.c_str()));
    }

    Result<Record<PHN_PARAMETERS>> Parameters() const { return Read(PHN_GetParameters); }
    Result<void> SetParameters(Record<PHN_PARAMETERS> parameters) { return Done(PHN_SetParameters(&parameters)); }

    // -- Contacts: vCard text (see PHN_CONTACT_RECORD) under an index of the host's

    Result<Record<PHN_FIELD_SIZES>> FieldSizes() const { return Read(PHN_GetFieldSizes); }

    // PHN_ERROR_NOT_FOUND: nothing is stored there; PHN_ERROR_INVALID_PARAMETER: beyond the handset's capacity.
    Result<std::string> Contact(std::uint32_t index) const { return ReadText(PHN_GetContact, index); }
    // PHN_ERROR_INVALID_PARAMETER: the text is rejected; PHN_ERROR_RESULT_4: such as a full phonebook.
    Result<void> SetContact(std::uint32_t index, std::string_view vCard)
    {
        return WriteText(PHN_SetContact, index, vCard);
    }
    Result<void> DeleteContact(std::uint32_t index) { return Done(PHN_DeleteContact(index)); }
    // May take minutes.
    Result<void> DeleteAllContacts() { return Done(PHN_DeleteAllContacts()); }

    // What the picture, the ringer and the group that contacts name by such an id are called. PHN_ERROR_NOT_FOUND.
    Result<std::string> PictureName(std::uint32_t id) const { return ReadName(PHN_GetPictureID, id); }
    Result<std::string> RingerName(std::uint32_t id) const { return ReadName(PHN_GetRingerID, id); }
    Result<std::string> GroupName(std::uint32_t id) const { return ReadName(PHN_GetGroup, id); }

    // -- Events: iCalendar text (see PHN_EVENT_RECORD) under the handset's index

    // PHN_ERROR_NOT_FOUND: nothing is stored there.
    Result<std::string> Event(std::uint32_t index) const { return ReadText(PHN_GetEvent, index); }
    // PHN_ERROR_INVALID_PARAMETER: the text is rejected.
    Result<void> SetEvent(std::uint32_t index, std::string_view iCalendar)
    {
        return WriteText(PHN_SetEvent, index, iCalendar);
    }
    Result<void> DeleteEvent(std::uint32_t index) { return Done(PHN_DeleteEvent(index)); }
    Result<void> DeleteAllEvents() { return Done(PHN_DeleteAllEvents()); }

    // -- Messages: of a box, PHN_MESSAGE_BOX_FIRST to PHN_MESSAGE_BOX_LAST, or by the handset's index

    // 0 on failure, too [PHN_GetMessageCount].
    std::uint32_t MessageCount(std::int32_t box) const { return PHN_GetMessageCount(box); }

    // All of a box: an exchange for each [PHN_GetFirstMessage, PHN_GetNextMessage].
    Result<std::vector<Message>> Messages(std::int32_t box) const
    {
        return List<Message>(PHN_ERROR_NO_MORE_MESSAGES, [box](bool isFirst, Message& message) {
            message.pdu.resize(kPduSize);
            PHN_SMS_MESSAGE record{sizeof record, message.pdu.data(), kPduSize, 0, 0};
            const PHN_ERROR code = isFirst ? PHN_GetFirstMessage(box, &record) : PHN_GetNextMessage(&record);
            message.pdu.resize(code ? 0 : record.uSizeofData);
            message.index = record.wIndex;
            return code;
        });
    }

    // Both give the index of the message [PHN_SendMessage, PHN_SaveMessage]. PHN_ERROR_PDU_NO_DESTINATION,
    // PHN_ERROR_PDU_NOT_DECODABLE, PHN_NETWORK_ERROR_1X_CO_ACCESS_FAILURE: the PDU cannot be used.
    Result<std::uint16_t> Send(std::span<const std::uint8_t> pdu) { return Store(PHN_SendMessage, pdu); }
    Result<std::uint16_t> Save(std::span<const std::uint8_t> pdu) { return Store(PHN_SaveMessage, pdu); }

    // PHN_ERROR_MESSAGE_NOT_FOUND.
    Result<void> DeleteMessage(std::uint16_t index) { return Done(PHN_DeleteMessage(index)); }
    Result<void> MarkMessage(std::uint16_t index, bool isRead) { return Done(PHN_SetMessageStatus(index, isRead)); }
    // May take minutes.
    Result<void> DeleteAllMessages(std::int32_t box) { return Done(PHN_DeleteAllMessages(box)); }

    // -- Calls: of a list, PHN_CALL_LIST_FIRST to PHN_CALL_LIST_LAST

    // 0 on failure, too [PHN_GetCallEntryCount].
    std::uint32_t CallCount(std::int32_t list) const { return PHN_GetCallEntryCount(list); }

    // All of a list: one or two exchanges for each [PHN_GetFirstCallEntry, PHN_GetNextCallEntry].
    Result<std::vector<Record<PHN_CALL_ENTRY>>> Calls(std::int32_t list) const
    {
        using Entry = Record<PHN_CALL_ENTRY>;
        return List<Entry>(PHN_ERROR_NO_MORE_ENTRIES, [list](bool isFirst, Entry& entry) {
            return isFirst ? PHN_GetFirstCallEntry(list, &entry) : PHN_GetNextCallEntry(&entry);
        });
    }

    Result<void> ClearCalls(std::int32_t list) { return Done(PHN_ClearCallEntries(list)); }

private:
    using Function = std::shared_ptr<const std::function<void()>>;

    // The library calls plain functions, one of which serves all types: what it calls in turn is the process's.
    struct Functions
    {
        std::mutex mutex; // never held while anything is called
        std::array<Function, PHN_CALLBACK_LAST + 1> ofType;
    };
    // Never destroyed: the library may tell a loss while the program ends.
    static Functions& All()
    {
        static Functions& functions = *new Functions;
        return functions;
    }

    static Function Find(std::uint32_t type)
    {
        const std::scoped_lock lock(All().mutex);
        return All().ofType[type];
    }

    static Function Exchange(std::uint32_t type, Function function)
    {
        const std::scoped_lock lock(All().mutex);
        return std::exchange(All().ofType[type], std::move(function));
    }

    static void PHN_CALL Call(std::uint32_t type) noexcept
    {
        const Function function = type <= PHN_CALLBACK_LAST ? Find(type) : nullptr;
        if (function)
            (*function)();
    }

    static PHN_ERROR Register(std::uint32_t type, std::uint32_t isRemoval)
    {
        return PHN_SetCallback(static_cast<std::int32_t>(type), Call, isRemoval);
    }

    static constexpr std::uint32_t kTextSize = 4096; // holds any contact, and all but the longest events
    static constexpr std::uint32_t kPduSize = 512;   // holds any PDU

    static Result<void> Done(PHN_ERROR code) { return code ? Result<void>(Error{code}) : Result<void>(); }

    template <class T>
    static Result<Record<T>> Read(PHN_ERROR(PHN_CALL* call)(T*))
    {
        Record<T> record;
        if (const PHN_ERROR code = call(&record))
            return Error{code};
        return record;
    }

    static Result<std::string> ReadName(PHN_ERROR(PHN_CALL* call)(std::uint32_t, PHN_PICTURE_ID*), std::uint32_t id)
    {
        Record<PHN_PICTURE_ID> record;
        if (const PHN_ERROR code = call(id, &record))
            return Error{code};
        return Text(record.szName);
    }

    template <class T>
    static Result<std::string> ReadText(PHN_ERROR(PHN_CALL* call)(std::uint32_t, T*), std::uint32_t index)
    {
        std::string text(kTextSize, '\0');
        T record{sizeof(T), text.data(), kTextSize};
        PHN_ERROR code = call(index, &record);
        if (code == PHN_ERROR_BUFFER_TOO_SMALL) {
            const std::uint32_t size = record.uSizeofData + 1; // the text and its terminator
            text.resize(size);
            record = T{sizeof(T), text.data(), size};
            code = call(index, &record);
        }
        if (code)
            return Error{code};
        return std::string(text.c_str());
    }

    template <class T>
    static Result<void> WriteText(PHN_ERROR(PHN_CALL* call)(std::uint32_t, T*), std::uint32_t index,
                                  std::string_view text)
    {
        if (!std::in_range<std::uint32_t>(text.size()))
            return Error{PHN_ERROR_INVALID_PARAMETER};
        // The library only reads what it is given to write.
        T record{sizeof(T), const_cast<char*>(text.data()), static_cast<std::uint32_t>(text.size())};
        return Done(call(index, &record));
    }

    static Result<std::uint16_t> Store(PHN_ERROR(PHN_CALL* call)(PHN_SMS_MESSAGE*), std::span<const std::uint8_t> pdu)
    {
        if (!std::in_range<std::uint32_t>(pdu.size()))
            return Error{PHN_ERROR_INVALID_PARAMETER};
        PHN_SMS_MESSAGE record{sizeof record, const_cast<std::uint8_t*>(pdu.data()),
                               static_cast<std::uint32_t>(pdu.size()), 0, 0};
        if (const PHN_ERROR code = call(&record))
            return Error{code};
        return std::uint16_t{record.wIndex};
    }

    template <class Item, class Step>
    static Result<std::vector<Item>> List(PHN_ERROR end, Step step)
    {
        std::vector<Item> items;
        for (;;) {
            Item item;
            const PHN_ERROR code = step(items.empty(), item);
            if (code == end)
                return items;
            if (code)
                return Error{code};
            items.push_back(std::move(item));
        }
    }
};

} // namespace phnnrv

#endif
