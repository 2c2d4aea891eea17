// What calls have come to, counted by all threads of a run: how they ended, and the longest of each against its bound.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace soak {

using Milliseconds = std::chrono::duration<double, std::milli>;

class Tally
{
public:
    // A call that took this long, by a clock that nothing scales. A count has no code.
    void Add(const std::string& name, std::uint32_t code, bool isCount, Milliseconds took);
    // What must not be, in a sentence.
    void AddFinding(const std::string& finding);

    // Both are for the end of a run. They print what has come, or the findings alone, and are false when there are any.
    // `turns` is the stated time that a call may have waited for those before it.
    bool Report(const std::map<std::string, std::chrono::milliseconds>& bounds, std::chrono::milliseconds turns);
    bool Judge() const;

private:
    std::mutex mutex_;
    std::uint64_t calls_ = 0;
    std::map<std::uint32_t, std::uint64_t> codes_;
    std::map<std::string, Milliseconds> longest_;
    std::map<std::string, std::uint64_t> findings_;
};

} // namespace soak
