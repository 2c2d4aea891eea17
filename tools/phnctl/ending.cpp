#include "phnctl/ending.h"

#include "system/system.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <set>

namespace phnctl {

namespace {

constexpr int kInterrupted = 130;

std::mutex mutex;

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
        std::fputs("\nphnctl: interrupted\n", stderr);
        EndNow(kInterrupted);
    });
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
