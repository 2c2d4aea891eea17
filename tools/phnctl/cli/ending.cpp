#include "phnctl/cli/ending.h"

#include "system/system.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <set>

namespace phnctl {

namespace {

enum class Interrupts
{
    End,
    Note,
    Noted,
};

std::atomic<Interrupts> interrupts = Interrupts::End;

std::mutex mutex;
std::function<void()> wakeUp; // what the first interrupt does

std::set<std::filesystem::path>& Paths()
{
    static std::set<std::filesystem::path> paths;
    return paths;
}

} // namespace

void RemoveAtEnd(const std::filesystem::path& path)
{
    const std::lock_guard lock(mutex);
    Paths().insert(path);
}

void Forget(const std::filesystem::path& path)
{
    const std::lock_guard lock(mutex);
    Paths().erase(path);
}

void EndOnInterrupt()
{
    host::OnInterrupt([] {
        Interrupts expected = Interrupts::Note;
        if (interrupts.compare_exchange_strong(expected, Interrupts::Noted)) {
            const std::lock_guard lock(mutex);
            if (wakeUp)
                wakeUp();
            else
                std::fputs("\nphnctl: stopping after the entry in hand (Ctrl-C again: at once)\n", stderr);
            return;
        }
        std::fputs("\nphnctl: interrupted\n", stderr);
        EndNow(kInterrupted);
    });
}

StopRequest::StopRequest(std::function<void()> wake)
{
    const std::lock_guard lock(mutex);
    wakeUp = std::move(wake);
    interrupts = Interrupts::Note;
}

StopRequest::~StopRequest()
{
    const std::lock_guard lock(mutex);
    wakeUp = {};
    interrupts = Interrupts::End;
}

bool StopRequest::Came() const
{
    return interrupts == Interrupts::Noted;
}

void EndNow(int status)
{
    const std::lock_guard lock(mutex);
    for (const auto& path : Paths()) {
        std::error_code error;
        std::filesystem::remove_all(path, error);
    }
    std::fflush(stdout);
    std::fflush(stderr);
    std::_Exit(status);
}

} // namespace phnctl
