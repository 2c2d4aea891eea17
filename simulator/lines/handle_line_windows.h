// What the lines on a Windows handle have in common: overlapped transfers that an interruption ends.
#pragma once

#include "simulator/lines/line.h"

namespace simulator {

// A kernel object, closed with its owner.
class Handle
{
public:
    explicit Handle(void* handle = nullptr) : handle_(handle) {}
    ~Handle() { Reset(nullptr); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    void* Get() const { return handle_; }
    void* Release() { return std::exchange(handle_, nullptr); }
    void Reset(void* handle);

private:
    void* handle_; // null or INVALID_HANDLE_VALUE: none
};

// A manual-reset event; throws std::system_error.
void* MakeEvent();
// Throws std::system_error with the last error, `what` being what failed.
[[noreturn]] void ThrowLastError(const std::string& what);

class HandleLine : public Line
{
public:
    std::size_t Read(std::span<std::uint8_t> buffer) override;
    bool Write(std::span<const std::uint8_t> bytes) override;
    bool Pause(std::chrono::milliseconds time) override;
    void Interrupt() override;

protected:
    // What a line does when its host has gone; false ends it.
    virtual bool HostHasGone() { return false; }

    // Begins an overlapped operation with this OVERLAPPED; false when it fails, as its last error says.
    using Begin = std::function<bool(void* overlapped)>;
    // The bytes that the operation has transferred, or its error, negated. It is cancelled when the line is
    // interrupted.
    long Transfer(const Begin& begin);
    // Until the object is signalled; false when the line is interrupted.
    bool WaitFor(void* object) const;
    bool IsInterrupted() const;

    // For so long, or until the object is signalled; false when the line is interrupted.
    bool PauseUnless(void* object, std::chrono::milliseconds time) const;

    Handle open_;

private:
    const Handle interrupted_{MakeEvent()};
};

} // namespace simulator
