// What the stand-in knows of a thread, whoever created it: its id, the mutexes it owns and what is to be
// done when it ends. A record is made when a thread first calls in, and signalled after the thread's last code outside
// this library has run: whoever has waited for a thread may unload the library that the thread ran in.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "threads/waitable.h"

namespace platform {

class Mutex;
class SerialPort;

class ThreadRecord : public Waitable
{
public:
    bool IsSignalled(const Lock&) const override { return ended; }

    void SetStarted(const Lock& lock)
    {
        started = true;
        Wake(lock);
    }
    void SetEnded(const Lock& lock)
    {
        ended = true;
        Wake(lock);
    }

    DWORD id = 0; // fixed once the thread runs

    // Under the base lock:
    bool started = false;
    bool ended = false;
    std::vector<std::shared_ptr<Mutex>> owned; // abandoned when the thread ends
    SerialPort* blockedIn = nullptr;           // where a blocking read or write of the thread is pending
};

// The calling thread's record.
const std::shared_ptr<ThreadRecord>& CurrentThread();

// Runs the function, without any lock, on the calling thread when it ends (not at the end of the process).
void AtThreadEnd(std::function<void()> function);

} // namespace platform
