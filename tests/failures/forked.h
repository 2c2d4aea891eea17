// Work in a process of its own.
#pragma once

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <system_error>

#include <sys/wait.h>
#include <unistd.h>

[[noreturn]] inline void Perform(const std::filesystem::path& errors, const std::function<bool()>& work)
{
    if (!std::freopen(errors.c_str(), "w", stderr))
        _exit(1);
    bool isRight = false;
    try {
        isRight = work();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "the host's own part has failed: %s\n", error.what());
    }
    std::fflush(stderr);
    _exit(isRight ? 0 : 1);
}

// A sanitizer prints where it stands; a second alarm ends what hangs even then.
inline void Abort(int)
{
    alarm(5);
    std::abort();
}

// Runs the work in a child of this process, which must have one thread only; its standard error goes to the file. True
// if the work returns true; a child that does not end in time is aborted.
inline bool RunForked(const std::filesystem::path& errors, std::chrono::seconds longest,
                      const std::function<bool()>& work)
{
    const pid_t child = fork();
    if (child < 0)
        throw std::system_error(errno, std::generic_category());
    if (child == 0) {
        struct sigaction once
        {
        };
        once.sa_handler = Abort;
        once.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
        sigaction(SIGALRM, &once, nullptr);
        alarm(static_cast<unsigned>(longest.count()));
        Perform(errors, work);
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && status == 0;
}
