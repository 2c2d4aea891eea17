// The messages of a test's thread.
#pragma once

#include <windows.h>

#include <chrono>

inline void DispatchPending()
{
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageA(&message);
}

// Dispatches messages until the condition holds; false if it does not within ten seconds.
template <typename Condition>
bool PumpUntil(Condition condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
        DispatchPending();
    }
    return true;
}
