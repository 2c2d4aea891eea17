// What the lines on a file descriptor have in common: waiting for it or for an interruption, never blocking in read or
// write.
#pragma once

#include "simulator/line.h"

namespace simulator {

// Closes its descriptor; -1 is none.
class Descriptor
{
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor() { Reset(-1); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const { return number_; }
    void Reset(int number);

private:
    int number_;
};

// `result` unless it is -1; then throws std::system_error with errno and `what`.
int Checked(int result, const std::string& what);

class DescriptorLine : public Line
{
public:
    std::size_t Read(std::span<std::uint8_t> buffer) override;
    bool Write(std::span<const std::uint8_t> bytes) override;
    bool Pause(std::chrono::milliseconds time) override;
    void Interrupt() override;

protected:
    DescriptorLine();

    // Waits until `events` hold for the descriptor; false when interrupted.
    bool WaitFor(int descriptor, short events);

    Descriptor open_; // non-blocking

private:
    Descriptor interrupted_; // readable once the line has ended
};

} // namespace simulator
