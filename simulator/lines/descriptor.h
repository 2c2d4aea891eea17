// File descriptors that close themselves, and one that interrupts who waits in poll.
#pragma once

#include <string>

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

// Readable once it has been raised, from any thread.
class Interruption
{
public:
    Interruption();

    int Get() const { return raised_.Get(); }
    void Raise() const;

private:
    Descriptor raised_;
};

} // namespace simulator
