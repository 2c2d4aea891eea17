#include "manners/process_state.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <clocale>
#include <filesystem>

namespace fs = std::filesystem;

std::vector<std::string> ProcessState()
{
    const mode_t mask = umask(0);
    umask(mask);
    std::vector<std::string> lines{fs::current_path(), "umask " + std::to_string(mask),
                                   std::setlocale(LC_ALL, nullptr)};
    for (char** variable = environ; *variable; ++variable)
        lines.emplace_back(*variable);
    for (int number = 1; number < SIGRTMAX; ++number) {
        struct sigaction action
        {
        };
        if (sigaction(number, nullptr, &action) == 0)
            lines.push_back("signal " + std::to_string(number) + " " +
                            std::to_string(reinterpret_cast<uintptr_t>(action.sa_handler)));
    }
    return lines;
}

std::vector<std::string> InheritedDescriptors()
{
    std::vector<std::string> inherited;
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        const int flags = fcntl(std::stoi(entry.path().filename()), F_GETFD);
        if (flags >= 0 && (flags & FD_CLOEXEC) == 0)
            inherited.push_back(entry.path().filename().string() + " " + fs::read_symlink(entry.path()).string());
    }
    return inherited;
}

bool HasControllingTerminal()
{
    const int terminal = open("/dev/tty", O_RDWR | O_CLOEXEC);
    if (terminal >= 0)
        close(terminal);
    return terminal >= 0;
}
