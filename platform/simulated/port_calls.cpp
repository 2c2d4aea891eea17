#include "port_calls.h"

#include "device_interface.h"
#include "handset_in_process.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <string>

namespace {

using simulated::HandsetInProcess;
using simulated::kInterfacePath;

BOOL Fail(DWORD error)
{
    SetLastError(error);
    return FALSE;
}

// Every port that opens is a pipe.
bool IsPort(HANDLE handle)
{
    return GetFileType(handle) == FILE_TYPE_PIPE;
}

// What the library asks the system for as it lists interfaces.
struct InterfaceList
{
    bool isPresent;
};

InterfaceList* ToList(HDEVINFO list)
{
    return static_cast<InterfaceList*>(list);
}

void Drain(HANDLE port, HANDLE done)
{
    std::array<BYTE, 4096> dropped;
    DWORD available = 0;
    while (PeekNamedPipe(port, nullptr, 0, nullptr, &available, nullptr) && available != 0) {
        OVERLAPPED record{};
        record.hEvent = done;
        DWORD size = 0;
        if (!ReadFile(port, dropped.data(), dropped.size(), nullptr, &record) && GetLastError() != ERROR_IO_PENDING)
            return;
        GetOverlappedResult(port, &record, &size, TRUE);
    }
}

} // namespace

HANDLE WINAPI SimulatedCreateFileA(LPCSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                   DWORD disposition, DWORD flags, HANDLE model)
{
    constexpr DWORD kClosing = 1000; // until the handset has noticed that the port was closed
    HandsetInProcess* handset = HandsetInProcess::Get();
    const std::string pipe = handset && _stricmp(path, kInterfacePath) == 0 ? handset->Port().PipeName() : "";
    if (pipe.empty()) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return INVALID_HANDLE_VALUE;
    }
    const auto open = [&] { return CreateFileA(pipe.c_str(), access, share, security, disposition, flags, model); };
    HANDLE port = open();
    if (port == INVALID_HANDLE_VALUE && GetLastError() == ERROR_PIPE_BUSY) {
        handset->Port().SetIsAwaited(true);
        if (WaitNamedPipeA(pipe.c_str(), kClosing))
            port = open();
        else
            SetLastError(ERROR_ACCESS_DENIED); // as of a port that is open already
        const DWORD error = GetLastError();
        handset->Port().SetIsAwaited(false);
        SetLastError(error);
    }
    return port;
}

BOOL WINAPI SimulatedSetCommTimeouts(HANDLE port, LPCOMMTIMEOUTS timeouts)
{
    if (!IsPort(port))
        return Fail(ERROR_INVALID_HANDLE);
    if (HandsetInProcess* handset = HandsetInProcess::Get())
        handset->Port().SetReadInterval(std::chrono::milliseconds(timeouts->ReadIntervalTimeout));
    return TRUE;
}

BOOL WINAPI SimulatedClearCommError(HANDLE port, LPDWORD errors, LPCOMSTAT state)
{
    if (!IsPort(port))
        return Fail(ERROR_INVALID_HANDLE);
    DWORD available = 0;
    if (!PeekNamedPipe(port, nullptr, 0, nullptr, &available, nullptr)) // unplugged
        return FALSE;
    *errors = 0;
    if (state) {
        *state = {};
        state->cbInQue = available;
    }
    return TRUE;
}

BOOL WINAPI SimulatedPurgeComm(HANDLE port, DWORD flags)
{
    DWORD available = 0;
    if (!IsPort(port))
        return Fail(ERROR_INVALID_HANDLE);
    if (!PeekNamedPipe(port, nullptr, 0, nullptr, &available, nullptr)) // unplugged
        return FALSE;
    if (flags & (PURGE_RXABORT | PURGE_TXABORT))
        CancelIoEx(port, nullptr);
    const HANDLE done = flags & PURGE_RXCLEAR ? CreateEventA(nullptr, TRUE, FALSE, nullptr) : nullptr;
    if (done) {
        Drain(port, done);
        CloseHandle(done);
    }
    return TRUE;
}

HDEVINFO WINAPI SimulatedSetupDiGetClassDevsA(const GUID* interfaceClass, PCSTR, HWND, DWORD)
{
    const HandsetInProcess* handset = HandsetInProcess::Begin();
    const bool isPresent =
        handset && IsEqualGUID(*interfaceClass, simulated::kInterfaceClass) && !handset->Port().PipeName().empty();
    return new InterfaceList{isPresent};
}

BOOL WINAPI SimulatedSetupDiEnumDeviceInterfaces(HDEVINFO list, PSP_DEVINFO_DATA, const GUID* interfaceClass,
                                                 DWORD index, PSP_DEVICE_INTERFACE_DATA found)
{
    if (!ToList(list)->isPresent || index != 0)
        return Fail(ERROR_NO_MORE_ITEMS);
    found->InterfaceClassGuid = *interfaceClass;
    found->Flags = SPINT_ACTIVE;
    return TRUE;
}

BOOL WINAPI SimulatedSetupDiGetDeviceInterfaceDetailA(HDEVINFO, PSP_DEVICE_INTERFACE_DATA,
                                                      PSP_DEVICE_INTERFACE_DETAIL_DATA_A detail, DWORD size,
                                                      PDWORD needed, PSP_DEVINFO_DATA)
{
    constexpr std::size_t kPath = offsetof(SP_DEVICE_INTERFACE_DETAIL_DATA_A, DevicePath);
    if (needed)
        *needed = kPath + sizeof kInterfacePath;
    if (!detail || size < kPath + sizeof kInterfacePath)
        return Fail(ERROR_INSUFFICIENT_BUFFER);
    std::memcpy(reinterpret_cast<char*>(detail) + kPath, kInterfacePath, sizeof kInterfacePath);
    return TRUE;
}

BOOL WINAPI SimulatedSetupDiDestroyDeviceInfoList(HDEVINFO list)
{
    delete ToList(list);
    return TRUE;
}

HDEVNOTIFY WINAPI SimulatedRegisterDeviceNotificationA(HANDLE recipient, LPVOID, DWORD)
{
    static char registration; // never null, or it would not be taken back, where the handset ends
    simulated::TellWindow(static_cast<HWND>(recipient));
    return &registration;
}

BOOL WINAPI SimulatedUnregisterDeviceNotification(HDEVNOTIFY)
{
    simulated::TellNoWindow();
    HandsetInProcess::End();
    return TRUE;
}
