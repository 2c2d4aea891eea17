// How the process ends before its time: on Ctrl-C, and after a search for a handset that was given up while the library
// was still at it. Temporary files are removed on every one of these ways. Work on many entries, which must not end in
// the middle of one, holds a StopRequest meanwhile.
#pragma once

#include <filesystem>
#include <functional>

namespace phnctl {

// A folder or file to remove when the process ends early; `Forget` when it is gone.
void RemoveAtEnd(const std::filesystem::path& path);
void Forget(const std::filesystem::path& path);

constexpr int kInterrupted = 130; // the exit status after Ctrl-C

// Ctrl-C ends the process from now on, status 130. Call it before any other thread is started.
void EndOnInterrupt();

// While one is alive, the first Ctrl-C is only noted; the second ends the process as usual. One at a time.
class StopRequest
{
public:
    // `wake` runs then, on a thread of its own; without it the person is told that the work goes on to the end of the
    // entry in hand.
    explicit StopRequest(std::function<void()> wake = {});
    ~StopRequest();
    StopRequest(const StopRequest&) = delete;
    StopRequest& operator=(const StopRequest&) = delete;

    bool Came() const;
};

// Ends the process without running destructors: a call into the library may still be in progress on another thread.
[[noreturn]] void EndNow(int status);

} // namespace phnctl
