// What the programs need of a system beyond Win32: the terminal, Ctrl-C, where the program lies, who holds a port.
// Used by the tools. One implementation per system (system_posix*.cpp, system_windows.cpp), chosen by CMake; nothing
// here knows the library or the handset.
#pragma once

#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {

// The program's arguments in UTF-8, without the program's name; also makes the terminal take UTF-8, a standard stream
// that the caller has closed fail instead of reaching a file that is opened later, and all threads share one heap. Call
// it first.
std::vector<std::string> Arguments(int argc, char** argv);

// Makes UTF-8 the process's ANSI code page where the system lets a program choose and nobody else has chosen. Call it
// before any other thread is started.
void PreferUtf8();

// What a person does to make UTF-8 the ANSI code page.
std::string HowToUseUtf8();

// Columns of the terminal that the stream writes to, 0 when it is none.
unsigned TerminalWidth(std::FILE* stream);
// And its lines.
unsigned TerminalHeight(std::FILE* stream);

// Asks on the terminal and reads one line that is not echoed. Where standard input is no terminal, reads one line from
// it without asking. Nothing at the end of input.
std::optional<std::string> ReadSecret(const std::string& prompt);

// Asks on the terminal and reads one line. Nothing, without asking, where standard input is no terminal.
std::optional<std::string> Ask(const std::string& prompt);

// From now on Ctrl-C, and a request to terminate, calls `action` on a thread of its own, each time. Call it before any
// other thread is started.
void OnInterrupt(std::function<void()> action);

std::filesystem::path ExecutableDirectory();

// Where the handset library may lie, most likely place first. The last may be a bare name, for the system's own search.
std::vector<std::string> LibraryCandidates();

// The system's own words for why a library does not load; tries it once more.
std::string WhyNotLoaded(const std::string& library);

// Where files that belong to the program but are no code lie.
std::filesystem::path DataDirectory();

// Where what is kept for the user lies; not made, and empty where the user has no such place.
std::filesystem::path StateDirectory();

enum class PortState
{
    Free,
    Busy,
    NoPermission,
    Unusable, // dangling, no terminal, gone
};

struct Process
{
    long id = 0;
    std::string name; // empty when it may not be known
};

struct PortReport
{
    PortState state = PortState::Free;
    std::string target;           // what the path leads to; empty when that is the path itself
    std::string reason;           // why it is not free
    std::vector<Process> holders; // of a busy port
    std::string remedy;           // the command that mends it; empty when nothing needs mending
};

// This process's lock on the folder where ports appear, as long as the pointer lives; null while another process has
// it. What is no folder has no lock that anybody could have. Release it on the thread that took it.
std::shared_ptr<void> LockPortFolder(const std::filesystem::path& folder);

// Who has it, as far as that can be seen.
std::vector<Process> PortFolderHolders(const std::filesystem::path& folder);

// Looks at a serial port without opening it. The calling process does not count as a holder.
PortReport ExaminePort(const std::string& path);

} // namespace host
