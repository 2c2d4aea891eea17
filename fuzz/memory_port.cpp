#include "fuzz/memory_port.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <string_view>
#include <utility>

#include "fuzz/require.h"
#include "simulator/handset/frame.h"

namespace fuzz {
namespace {

constexpr DWORD kFailure = ERROR_GEN_FAILURE; // that of a terminal that has hung up

HANDLE openPort = nullptr;
HANDLE openLog = nullptr;
ULONGLONG milliseconds = 0;

// The operation that has begun and is not over.
struct Pending
{
    OVERLAPPED* record = nullptr;
    void* buffer = nullptr; // null for a write
    DWORD size = 0;
    Outcome outcome = Outcome::Now;
} pending;

// The stand-in's call of this name, for what is neither port nor log.
template <typename Function>
Function* Next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

BOOL Fail(DWORD error)
{
    SetLastError(error);
    return FALSE;
}

// Moves what is there into a read's buffer; the rest of a piece stays.
DWORD TakeBytes(void* buffer, DWORD size)
{
    auto& pieces = MemoryPort::Get().pieces;
    if (pieces.empty())
        return 0;
    Bytes& bytes = pieces.front().bytes;
    const DWORD count = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), size));
    std::copy_n(bytes.begin(), count, static_cast<std::uint8_t*>(buffer));
    bytes.erase(bytes.begin(), bytes.begin() + count);
    if (bytes.empty())
        pieces.pop_front();
    return count;
}

BOOL Begin(OVERLAPPED* record, void* buffer, DWORD size, Outcome outcome)
{
    Require(!pending.record); // the last one was never ended
    pending = {record, buffer, size, outcome};
    record->Internal = STATUS_PENDING;
    return Fail(ERROR_IO_PENDING);
}

void End(DWORD error, DWORD count)
{
    pending.record->Internal = error;
    pending.record->InternalHigh = count;
    pending = {};
}

BOOL ReadPort(void* buffer, DWORD size, DWORD* done, OVERLAPPED* record)
{
    auto& pieces = MemoryPort::Get().pieces;
    const Outcome outcome = pieces.empty() ? Outcome::TimeOut : pieces.front().outcome;
    if (outcome == Outcome::Failure) {
        pieces.pop_front();
        return Fail(kFailure);
    }
    if (outcome != Outcome::Now && record)
        return Begin(record, buffer, size, outcome);
    *done = TakeBytes(buffer, size);
    return TRUE;
}

BOOL WritePort(const void* data, DWORD size, DWORD* done, OVERLAPPED* record)
{
    MemoryPort& port = MemoryPort::Get();
    ++port.writes;
    const auto* const bytes = static_cast<const std::uint8_t*>(data);
    const Outcome outcome = port.onWrite({bytes, size});
    if (outcome == Outcome::Failure)
        return Fail(kFailure);
    if (outcome != Outcome::Now && record)
        return Begin(record, nullptr, size, outcome);
    *done = size;
    return TRUE;
}

// One line, whatever the handset calls itself.
void CheckLogLine(std::string_view line)
{
    Require(line.ends_with("\r\n"));
    line.remove_suffix(2);
    if (line.ends_with('\n')) // a text's own
        line.remove_suffix(1);
    Require(std::ranges::none_of(line, [](unsigned char c) { return (c < 0x20 && c != '\t') || c == 0x7F; }));
}

DWORD Setting(std::string_view name)
{
    if (name == "Logging Level")
        return 0xFFFFFFFF;
    return name == "Prompt Reads" && MemoryPort::Get().isPrompt;
}

} // namespace

MemoryPort& MemoryPort::Get()
{
    static MemoryPort& port = *new MemoryPort;
    return port;
}

Bytes MemoryPort::Frame(std::span<const std::uint8_t> payload) const
{
    Bytes plain(simulator::kReplyPayloadOffset);
    plain.reserve(plain.size() + payload.size() + simulator::kCheckSize);
    const std::uint32_t fields[] = {static_cast<std::uint32_t>(payload.size() + 7), writes}; // length, sequence
    plain[0] = simulator::kCommandCode;
    std::memcpy(plain.data() + simulator::kReplySequenceOffset - sizeof fields[0], fields, sizeof fields);
    plain.insert(plain.end(), payload.begin(), payload.end());
    plain.resize(plain.size() + simulator::kCheckSize);
    return simulator::Stuff(plain);
}

} // namespace fuzz

using namespace fuzz;

HANDLE WINAPI CreateFileA(LPCSTR name, DWORD, DWORD, LPSECURITY_ATTRIBUTES, DWORD, DWORD, HANDLE)
{
    const bool isLog = std::string_view(name).ends_with(".log");
    MemoryPort& port = MemoryPort::Get();
    if (!isLog && !port.opens) {
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    }
    if (!isLog) {
        port.pieces.clear();
        port.writes = 0;
    }
    return (isLog ? openLog : openPort) = CreateEventA(nullptr, TRUE, FALSE, nullptr); // a handle as good as any
}

BOOL WINAPI ReadFile(HANDLE file, LPVOID buffer, DWORD size, LPDWORD done, LPOVERLAPPED record)
{
    return file == openPort ? ReadPort(buffer, size, done, record) : Fail(ERROR_INVALID_HANDLE);
}

BOOL WINAPI WriteFile(HANDLE file, LPCVOID data, DWORD size, LPDWORD done, LPOVERLAPPED record)
{
    if (file == openPort)
        return WritePort(data, size, done, record);
    Require(file == openLog);
    CheckLogLine({static_cast<const char*>(data), size});
    return TRUE;
}

BOOL WINAPI SetCommTimeouts(HANDLE, LPCOMMTIMEOUTS)
{
    return TRUE;
}

BOOL WINAPI PurgeComm(HANDLE, DWORD flags)
{
    MemoryPort& port = MemoryPort::Get();
    if (!port.tells)
        return Fail(kFailure);
    if (flags & PURGE_RXCLEAR)
        port.pieces.clear();
    return TRUE;
}

BOOL WINAPI ClearCommError(HANDLE, LPDWORD errors, LPCOMSTAT status)
{
    if (!MemoryPort::Get().tells)
        return Fail(kFailure);
    const auto& pieces = MemoryPort::Get().pieces;
    *errors = 0;
    if (status)
        status->cbInQue = pieces.empty() ? 0 : static_cast<DWORD>(pieces.front().bytes.size());
    return TRUE;
}

DWORD WINAPI WaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL all, DWORD timeOut)
{
    if (!pending.record || handles[0] != pending.record->hEvent) {
        static const auto next = Next<decltype(WaitForMultipleObjects)>("phn_WaitForMultipleObjects");
        return next(count, handles, all, timeOut);
    }
    if (pending.outcome == Outcome::TimeOut || MemoryPort::Get().isSlow)
        milliseconds += timeOut;
    if (pending.outcome == Outcome::TimeOut)
        return WAIT_TIMEOUT;
    if (pending.outcome == Outcome::LateFailure)
        End(kFailure, 0);
    else
        End(ERROR_SUCCESS, pending.buffer ? TakeBytes(pending.buffer, pending.size) : pending.size);
    return WAIT_OBJECT_0;
}

BOOL WINAPI GetOverlappedResult(HANDLE, LPOVERLAPPED record, LPDWORD done, BOOL)
{
    Require(record->Internal != STATUS_PENDING); // it would be waited for without end
    *done = static_cast<DWORD>(record->InternalHigh);
    const DWORD error = static_cast<DWORD>(record->Internal);
    return error == ERROR_SUCCESS ? TRUE : Fail(error);
}

BOOL WINAPI CancelIoEx(HANDLE, LPOVERLAPPED record)
{
    if (!pending.record || record != pending.record)
        return Fail(ERROR_NOT_FOUND);
    End(ERROR_OPERATION_ABORTED, pending.buffer ? TakeBytes(pending.buffer, pending.size) : 0);
    return TRUE;
}

HDEVNOTIFY WINAPI RegisterDeviceNotificationA(HANDLE window, LPVOID, DWORD)
{
    return MemoryPort::Get().window = static_cast<HWND>(window);
}

BOOL WINAPI UnregisterDeviceNotification(HDEVNOTIFY)
{
    return TRUE;
}

// No timer: the port watch never starts, and the callbacks are polled when the input says so.
UINT_PTR WINAPI SetTimer(HWND, UINT_PTR timer, UINT, TIMERPROC)
{
    return timer;
}

BOOL WINAPI PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    static const auto next = Next<decltype(PostMessageA)>("phn_PostMessageA");
    return MemoryPort::Get().takesMessages ? next(window, message, wParam, lParam) : Fail(ERROR_NOT_ENOUGH_QUOTA);
}

ULONGLONG WINAPI GetTickCount64()
{
    return milliseconds;
}

void WINAPI Sleep(DWORD time)
{
    milliseconds += time;
}

LSTATUS WINAPI RegOpenKeyExA(HKEY, LPCSTR, DWORD, DWORD, PHKEY key)
{
    *key = HKEY_LOCAL_MACHINE;
    return ERROR_SUCCESS;
}

LSTATUS WINAPI RegQueryValueExA(HKEY, LPCSTR name, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD size)
{
    const DWORD value = Setting(name);
    if (type)
        *type = REG_DWORD;
    *size = sizeof value;
    std::memcpy(data, &value, sizeof value);
    return ERROR_SUCCESS;
}

LSTATUS WINAPI RegCloseKey(HKEY)
{
    return ERROR_SUCCESS;
}
