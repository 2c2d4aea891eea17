#include "system/system.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <iostream>
#include <malloc.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

namespace host {

namespace {

// What the terminal is put back to after a secret was typed; also when an interrupt ends the program in between.
termios echoing{};
std::atomic<bool> echoIsOff = false;

void RestoreEcho()
{
    if (echoIsOff.exchange(false))
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &echoing);
}

// Keeps the terminal from showing what is typed, for as long as the object lives.
class EchoOff
{
public:
    EchoOff()
    {
        tcgetattr(STDIN_FILENO, &echoing);
        echoIsOff = true;
        termios quiet = echoing;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    }
    ~EchoOff() { RestoreEcho(); }
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;
};

// A port that is opened must not get the number of a stream that the caller has closed, or messages would go to it.
// Reading or writing such a stream still fails.
void OccupyClosedStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(stream, F_GETFD) == -1)
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

std::optional<std::string> ReadLine()
{
    std::string line;
    return std::getline(std::cin, line) ? std::optional(line) : std::nullopt;
}

} // namespace

std::vector<std::string> Arguments(int argc, char** argv)
{
    OccupyClosedStreams();
    mallopt(M_ARENA_MAX, 1); // a heap of a thread's own would grow by a system call for each page
    return {argv + 1, argv + argc};
}

void PreferUtf8()
{
    setenv("PHNNRV_ANSI_CODE_PAGE", "65001", 0);
}

std::string HowToUseUtf8()
{
    return "set PHNNRV_ANSI_CODE_PAGE to 65001, or leave it unset";
}

unsigned TerminalWidth(std::FILE* stream)
{
    const int descriptor = fileno(stream);
    if (!isatty(descriptor))
        return 0;
    winsize size{};
    return ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col ? size.ws_col : 80;
}

unsigned TerminalHeight(std::FILE* stream)
{
    const int descriptor = fileno(stream);
    if (!isatty(descriptor))
        return 0;
    winsize size{};
    return ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_row ? size.ws_row : 24;
}

std::optional<std::string> ReadSecret(const std::string& prompt)
{
    if (!isatty(STDIN_FILENO))
        return ReadLine();
    std::fputs(prompt.c_str(), stderr);
    const EchoOff quiet;
    const auto line = ReadLine();
    std::fputc('\n', stderr);
    return line;
}

std::optional<std::string> Ask(const std::string& prompt)
{
    if (!isatty(STDIN_FILENO))
        return std::nullopt;
    std::fputs(prompt.c_str(), stderr);
    return ReadLine();
}

void OnInterrupt(std::function<void()> action)
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGHUP);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([signals, act = std::move(action)] {
        int number = 0;
        while (sigwait(&signals, &number) == 0) {
            RestoreEcho();
            act();
        }
    }).detach();
}

std::filesystem::path ExecutableDirectory()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

std::vector<std::string> LibraryCandidates()
{
    constexpr const char* kLibrary = "libphnnrv.so.0";
    const std::filesystem::path here = ExecutableDirectory();
    std::vector<std::string> candidates;
    for (const char* folder : {PHN_LIBRARIES_FROM_PROGRAMS, "../lib", "."}) {
        const std::string candidate = (here / folder / kLibrary).lexically_normal().string();
        if (std::find(candidates.begin(), candidates.end(), candidate) == candidates.end())
            candidates.push_back(candidate);
    }
    candidates.push_back(kLibrary);
    return candidates;
}

std::string WhyNotLoaded(const std::string& library)
{
    void* loaded = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!loaded)
        return dlerror();
    dlclose(loaded);
    return "it loads now";
}

std::filesystem::path DataDirectory()
{
    return (ExecutableDirectory() / PHN_DATA_FROM_PROGRAMS / "phnnrv").lexically_normal();
}

std::filesystem::path StateDirectory()
{
    const char* const named = std::getenv("XDG_STATE_HOME");
    if (named && *named == '/')
        return std::filesystem::path(named) / "phnnrv";
    const char* const home = std::getenv("HOME");
    return home && *home == '/' ? std::filesystem::path(home) / ".local/state/phnnrv" : std::filesystem::path();
}

} // namespace host
