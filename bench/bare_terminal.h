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

    // Writes the frame and reads its reply. Without a length, under the library's usual rule: until 10 ms pass without
    // a byte; with one, no longer than for so many bytes. How many came.
    std::size_t Exchange(const void* frame, std::size_t length, std::size_t replyLength = kLongestReply);

private:
    static constexpr std::size_t kLongestReply = 8193;

    int terminal_;
    char reply_[kLongestReply];
};

} // namespace bench
