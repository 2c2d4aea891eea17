#include "windows/driver.h"

#include <stdexcept>

#include "support/messages.h"

namespace driver {

namespace {

constexpr GUID kDiagnosticClass = {0x6B1D2E40, 0x5C77, 0x4A1E, {0x9D, 0x3A, 0x2F, 0x80, 0xC4, 0xE1, 0xB7, 0xA5}};
constexpr char kSerialMap[] = R"(HARDWARE\DEVICEMAP\SERIALCOMM)";
constexpr char kDevice[] = R"(System\CurrentControlSet\Enum\USB\vid_fffe&pid_0001\0001)";
constexpr char kInterface[] =
    R"(System\CurrentControlSet\Control\DeviceClasses\{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5}\)"
    R"(##?#usb#vid_fffe&pid_0001#0001#{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5})";

// A key below HKEY_LOCAL_MACHINE, made if it is missing; it goes when the system ends.
class Key
{
public:
    explicit Key(const std::string& path)
    {
        Check(RegCreateKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                              nullptr, &key_, nullptr),
              path);
    }
    ~Key() { RegCloseKey(key_); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    void Set(const char* name, const std::string& text) { Set(name, REG_SZ, text.c_str(), text.size() + 1); }
    void Set(const char* name, DWORD number) { Set(name, REG_DWORD, &number, sizeof number); }
    void Clear()
    {
        char name[256];
        for (DWORD size = sizeof name; RegEnumValueA(key_, 0, name, &size, nullptr, nullptr, nullptr, nullptr) == 0;
             size = sizeof name)
            Check(RegDeleteValueA(key_, name), name);
    }

private:
    void Set(const char* name, DWORD type, const void* value, std::size_t size)
    {
        Check(RegSetValueExA(key_, name, 0, type, static_cast<const BYTE*>(value), static_cast<DWORD>(size)), name);
    }
    static void Check(LSTATUS status, const std::string& what)
    {
        if (status != ERROR_SUCCESS)
            throw std::runtime_error(what + ": error " + std::to_string(status));
    }

    HKEY key_ = nullptr;
};

} // namespace

void SetInterfacePresent(bool present)
{
    Key(kDevice).Set("ClassGUID", "{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5}");
    Key(kInterface).Set("DeviceInstance", R"(USB\vid_fffe&pid_0001\0001)");
    const std::string reference = std::string(kInterface) + R"(\#)";
    Key(reference).Set("SymbolicLink", kInterfacePath);
    Key(reference + R"(\Control)").Set("Linked", present ? 1 : 0);
}

LRESULT SendDeviceChange(WPARAM event)
{
    const HWND window = FindWindowA(kDeviceWindow, nullptr);
    return window ? SendInterfaceMessage(window, event, kDiagnosticClass, kInterfacePath) : FALSE;
}

void SetSerialPort(const std::string& port)
{
    ClearSerialPorts();
    Key(kSerialMap).Set(R"(\Device\Serial0)", port);
}

void ClearSerialPorts()
{
    Key(kSerialMap).Clear();
}

void SetLoggingLevel(DWORD level)
{
    Key(R"(SOFTWARE\Norvik\LinkDesk)").Set("Logging Level", level);
}

void SetPromptReads(bool areWanted)
{
    Key(R"(SOFTWARE\Norvik\LinkDesk)").Set("Prompt Reads", areWanted ? 1 : 0);
}

std::filesystem::path BuiltLibrary()
{
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).replace_filename("PHNNRV.dll");
}

void DispatchStartTimer()
{
    constexpr WPARAM kStartTimer = 3;
    MSG message;
    do {
        if (GetMessageA(&message, nullptr, 0, 0) <= 0)
            throw std::runtime_error("no messages");
        DispatchMessageA(&message);
    } while (message.message != WM_TIMER || message.wParam != kStartTimer);
}

} // namespace driver
