#include "fuzz/session/session.h"

#include <cstddef>
#include <cstring>
#include <iterator>
#include <new>
#include <string_view>

#include <dbt.h>

#include "fuzz/require.h"
#include "fuzz/session/host_calls.h"

namespace fuzz {
namespace {

constexpr GUID kDiagnosticInterface{0x6B1D2E40, 0x5C77, 0x4A1E, {0x9D, 0x3A, 0x2F, 0x80, 0xC4, 0xE1, 0xB7, 0xA5}};
constexpr GUID kModemInterface{0x2C7089AA, 0x2E0E, 0x11D1, {0xB1, 0x14, 0x00, 0xC0, 0x4F, 0xC2, 0xAA, 0xE4}};
constexpr std::string_view kPath = R"(\\?\usb#vid_fffe&pid_0001#0001)";
constexpr std::uint8_t kCommandCode = 0x4B; // no command of a modem port begins so
constexpr UINT_PTR kPollTimer = 1;
constexpr int kMostCalls = 16; // more would find what fewer find, later
constexpr int kDeepest = 3;    // calls inside callbacks

void SendDeviceChange(WPARAM event, const GUID& interface)
{
    alignas(DEV_BROADCAST_DEVICEINTERFACE_A) std::byte bytes[128]{};
    constexpr std::size_t nameOffset = offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name);
    auto* const record = new (bytes) DEV_BROADCAST_DEVICEINTERFACE_A{};
    record->dbcc_size = sizeof bytes;
    record->dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    record->dbcc_classguid = interface;
    std::memcpy(bytes + nameOffset, kPath.data(), kPath.size());
    SendMessageA(MemoryPort::Get().window, WM_DEVICECHANGE, event, reinterpret_cast<LPARAM>(record));
}

} // namespace

void Session::Run()
{
    Require(MemoryPort::Get().window != nullptr);
    MemoryPort::Get().onWrite = [this](std::span<const std::uint8_t> request) { return OnWrite(request); };
    SetCallbackSession(this);
    Arrive();
    for (int calls = 0; calls < kMostCalls && !input_.IsOver(); ++calls)
        RunCall();
    SetCallbackSession(nullptr);
    Remove();
    Dispatch();
}

void Session::RunCall()
{
    if (depth_ >= kDeepest)
        return;
    ++depth_;
    const auto calls = HostCalls();
    calls[input_.Byte() % calls.size()].run(*this);
    --depth_;
}

Outcome Session::OnWrite(std::span<const std::uint8_t> request)
{
    const bool isFramed = request.front() == kCommandCode;
    Reply reply = replier_.Answer(request, isFramed);
    auto& pieces = MemoryPort::Get().pieces;
    pieces.insert(pieces.end(), std::make_move_iterator(reply.pieces.begin()),
                  std::make_move_iterator(reply.pieces.end()));
    return reply.writing;
}

void Session::Arrive()
{
    const std::uint8_t bits = input_.Byte();
    MemoryPort& port = MemoryPort::Get();
    port.isPrompt = bits & kPromptReads;
    port.opens = !(bits & kPortRefuses);
    port.isSlow = true;
    port.tells = true;
    port.takesMessages = !(bits & kWindowIsFull);
    isModem_ = bits & kModemPort;
    SendDeviceChange(DBT_DEVICEARRIVAL, isModem_ ? kModemInterface : kDiagnosticInterface);
    port.tells = !(bits & kPortTellsNothing); // a port that cannot be asked is not opened
}

void Session::Remove()
{
    SendDeviceChange(DBT_DEVICEREMOVECOMPLETE, isModem_ ? kModemInterface : kDiagnosticInterface);
}

void Session::Suspend()
{
    SendMessageA(MemoryPort::Get().window, WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
}

void Session::Dispatch()
{
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageA(&message);
}

void Session::Tick()
{
    Dispatch();
    SendMessageA(MemoryPort::Get().window, WM_TIMER, kPollTimer, 0);
}

} // namespace fuzz
