#include "system/system.h"

#include <io.h>
#include <iostream>
#include <system_error>
#include <windows.h>

#include <tlhelp32.h>

namespace host {

namespace {

std::function<void()> interruptAction;

BOOL WINAPI OnConsoleEvent(DWORD)
{
    interruptAction();
    return TRUE;
}

std::string Utf8(const wchar_t* text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, result.data(), size, nullptr, nullptr);
    result.pop_back();
    return result;
}

std::filesystem::path ExecutablePath()
{
    wchar_t path[32768] = {};
    GetModuleFileNameW(nullptr, path, 32767);
    return path;
}

std::optional<std::string> ReadLine()
{
    std::string line;
    return std::getline(std::cin, line) ? std::optional(line) : std::nullopt;
}

// The other processes of the same program.
std::vector<Process> OthersOfThisProgram()
{
    const std::wstring name = ExecutablePath().filename().wstring();
    std::vector<Process> others;
    const HANDLE processes = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W process{};
    process.dwSize = sizeof process;
    for (BOOL goesOn = Process32FirstW(processes, &process); goesOn; goesOn = Process32NextW(processes, &process))
        if (process.th32ProcessID != GetCurrentProcessId() && _wcsicmp(process.szExeFile, name.c_str()) == 0)
            others.push_back({static_cast<long>(process.th32ProcessID), Utf8(process.szExeFile)});
    if (processes != INVALID_HANDLE_VALUE)
        CloseHandle(processes);
    return others;
}

} // namespace

std::vector<std::string> Arguments(int argc, char** argv)
{
    SetConsoleOutputCP(CP_UTF8);
    for (const DWORD stream : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) // a file refuses
        if (DWORD mode = 0; GetConsoleMode(GetStdHandle(stream), &mode))
            SetConsoleMode(GetStdHandle(stream), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) {
        const int size = MultiByteToWideChar(CP_ACP, 0, argv[i], -1, nullptr, 0);
        std::wstring wide(static_cast<size_t>(size), L'\0');
        MultiByteToWideChar(CP_ACP, 0, argv[i], -1, wide.data(), size);
        arguments.push_back(Utf8(wide.c_str()));
    }
    return arguments;
}

void PreferUtf8() {} // the code page is the system's

std::string HowToUseUtf8()
{
    return "choose UTF-8 for programs without Unicode in the system's region settings";
}

unsigned TerminalWidth(std::FILE* stream)
{
    CONSOLE_SCREEN_BUFFER_INFO info{};
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    return GetConsoleScreenBufferInfo(handle, &info)
               ? static_cast<unsigned>(info.srWindow.Right - info.srWindow.Left + 1)
               : 0;
}

unsigned TerminalHeight(std::FILE* stream)
{
    CONSOLE_SCREEN_BUFFER_INFO info{};
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    return GetConsoleScreenBufferInfo(handle, &info)
               ? static_cast<unsigned>(info.srWindow.Bottom - info.srWindow.Top + 1)
               : 0;
}

std::optional<std::string> ReadSecret(const std::string& prompt)
{
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    DWORD mode = 0;
    const bool console = GetConsoleMode(input, &mode);
    if (console) {
        std::fputs(prompt.c_str(), stderr);
        SetConsoleMode(input, mode & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
    }
    auto line = ReadLine();
    if (console) {
        SetConsoleMode(input, mode);
        std::fputc('\n', stderr);
    }
    return line;
}

std::optional<std::string> Ask(const std::string& prompt)
{
    DWORD mode = 0;
    if (!GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode))
        return std::nullopt;
    std::fputs(prompt.c_str(), stderr);
    return ReadLine();
}

void OnInterrupt(std::function<void()> action)
{
    interruptAction = std::move(action);
    SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

std::filesystem::path ExecutableDirectory()
{
    return ExecutablePath().parent_path();
}

std::vector<std::string> LibraryCandidates()
{
    return {(ExecutableDirectory() / "PHNNRV.dll").string(), "PHNNRV.dll"};
}

std::string WhyNotLoaded(const std::string& library)
{
    if (const HMODULE loaded = LoadLibraryA(library.c_str())) {
        FreeLibrary(loaded);
        return "it loads now";
    }
    return std::system_category().message(static_cast<int>(GetLastError()));
}

std::filesystem::path DataDirectory()
{
    return ExecutableDirectory();
}

std::filesystem::path StateDirectory()
{
    const wchar_t* const folder = _wgetenv(L"LOCALAPPDATA");
    return folder && *folder ? std::filesystem::path(folder) / "phnnrv" : std::filesystem::path();
}

// There is one place for all ports, so the name stands for it.
std::shared_ptr<void> LockPortFolder(const std::filesystem::path&)
{
    const HANDLE mutex = CreateMutexA(nullptr, FALSE, "Local\\phnctl-search");
    const DWORD answer = mutex ? WaitForSingleObject(mutex, 0) : WAIT_FAILED;
    if (answer == WAIT_OBJECT_0 || answer == WAIT_ABANDONED)
        return {mutex, [](HANDLE taken) {
                    ReleaseMutex(taken);
                    CloseHandle(taken);
                }};
    if (mutex)
        CloseHandle(mutex);
    return nullptr;
}

std::vector<Process> PortFolderHolders(const std::filesystem::path&)
{
    return OthersOfThisProgram();
}

PortReport ExaminePort(const std::string& path)
{
    PortReport report;
    const HANDLE port = CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_OVERLAPPED, nullptr);
    if (port != INVALID_HANDLE_VALUE) {
        CloseHandle(port);
        return report;
    }
    const DWORD error = GetLastError();
    // A port that another program has open is refused with "access denied".
    report.state =
        error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION ? PortState::Busy : PortState::Unusable;
    report.reason = report.state == PortState::Busy ? "another program uses it"
                                                    : "does not open, system error " + std::to_string(error);
    // Windows does not tell who has a port open; this program would be one who may.
    if (report.state == PortState::Busy)
        report.holders = OthersOfThisProgram();
    report.remedy = report.state == PortState::Busy ? "close the program that uses it (resmon shows which)"
                                                    : "unplug the handset and plug it in again";
    return report;
}

} // namespace host
