// What the library's callbacks report, for the thread that watches: the host's function only notes the type and wakes
// that thread, which may then take its time. One object at a time; it must live until its registrations have ended.
#pragma once

#include "phnnrv.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <vector>

namespace phnctl {

class Changes
{
public:
    Changes();
    ~Changes();
    Changes(const Changes&) = delete;
    Changes& operator=(const Changes&) = delete;

    // The function to register.
    static void PHN_CALL Note(std::uint32_t callbackType);

    // Waits for changes and takes them, each type once, in their order. Empty when the time is over or Stop was called.
    std::vector<std::uint32_t> Await(std::chrono::milliseconds limit);
    void Clear();

    // Ends every wait, from now on.
    void Stop();
    bool IsStopped() const;

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::uint32_t> m_types;
    bool m_stopped = false;
};

} // namespace phnctl
