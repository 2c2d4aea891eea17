// What of a process every part of it shares, as text that a test can compare.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <clocale>
#include <filesystem>
#include <string>
#include <vector>

// One line for the working directory, the umask, the locale, each environment variable and each signal's handler.
inline std::vector<std::string> ProcessState()
{
    const mode_t mask = umask(0);
    umask(mask);
    std::vector<std::string> lines{std::filesystem::current_path(), "umask " + std::to_string(mask),
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

// What a child would inherit of this process's descriptors, by what they stand for.
inline std::vector<std::string> InheritedDescriptors()
{
    std::vector<std::string> inherited;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        const int flags = fcntl(std::stoi(entry.path().filename()), F_GETFD);
        if (flags >= 0 && (flags & FD_CLOEXEC) == 0)
            inherited.push_back(entry.path().filename().string() + " " +
                                std::filesystem::read_symlink(entry.path()).string());
    }
    return inherited;
}

inline bool HasControllingTerminal()
{
    const int terminal = open("/dev/tty", O_RDWR | O_CLOEXEC);
    if (terminal >= 0)
        close(terminal);
    return terminal >= 0;
}
