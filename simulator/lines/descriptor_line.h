// What the lines on a file descriptor have in common: waiting for it or for an interruption, never blocking in read or
// write.
#pragma once

#include "simulator/lines/descriptor.h"
#include "simulator/lines/line.h"

namespace simulator {

class DescriptorLine : public Line
{
public:
    std::size_t Read(std::span<std::uint8_t> buffer) override;
    bool Write(std::span<const std::uint8_t> bytes) override;
    bool Pause(std::chrono::milliseconds time) override;
    void Interrupt() override;

protected:
    // What a line does when its host has sent something, and when it has gone; false ends the line.
    virtual void HostHasSent() {}
    virtual bool HostHasGone() { return false; }
    // Waits until `events` hold for the descriptor; false when interrupted.
    bool WaitFor(int descriptor, short events);

    Descriptor open_; // non-blocking

private:
    bool Continues(); // once the host has gone

    Interruption interrupted_;
};

} // namespace simulator
