// A write and a read on a terminal with nothing around them: what an exchange costs at least. Used as the reference of
// the benchmarks that exchange frames.
#pragma once

#include <cstddef>
#include <string>

namespace bench {

class BareTerminal
{
public:
    // Opens the terminal and makes it raw. Throws std::system_error.
    explicit BareTerminal(const std::string& path);
    ~BareTerminal();
    BareTerminal(const BareTerminal&) = delete;
    BareTerminal& operator=(const BareTerminal&) = delete;

    // Writes the frame and reads under the library's rule: until 10 ms pass without a byte. False when no byte came.
    bool Exchange(const void* frame, std::size_t length);

private:
    int terminal_;
};

} // namespace bench
