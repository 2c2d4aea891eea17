#include "failures/forked.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <system_error>

#include <sys/wait.h>
#include <unistd.h>

namespace {

[[noreturn]] void Perform(const std::filesystem::path& errors, const std::function<bool()>& work)
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

// Waits for a child's end; false if none comes in that time.
bool AwaitEnd(const sigset_t& ends, std::chrono::seconds time)
{
    const timespec left{static_cast<time_t>(time.count()), 0};
    return sigtimedwait(&ends, nullptr, &left) >= 0;
}

} // namespace

bool RunForked(const std::filesystem::path& errors, std::chrono::seconds longest, const std::function<bool()>& work)
{
    sigset_t ends;
    sigset_t before;
    sigemptyset(&ends);
    sigaddset(&ends, SIGCHLD);
    sigprocmask(SIG_BLOCK, &ends, &before);
    const pid_t child = fork();
    if (child < 0)
        throw std::system_error(errno, std::generic_category());
    if (child == 0) {
        sigprocmask(SIG_SETMASK, &before, nullptr);
        Perform(errors, work);
    }
    int status = 0;
    bool isInTime = true;
    while (waitpid(child, &status, WNOHANG) != child) {
        if (AwaitEnd(ends, longest))
            continue;
        isInTime = false;
        kill(child, SIGABRT); // a sanitizer prints where it stood
        if (!AwaitEnd(ends, std::chrono::seconds(5)))
            kill(child, SIGKILL);
        waitpid(child, &status, 0);
        break;
    }
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return isInTime && status == 0;
}
