// One line on standard error that tells how far long work has come: a bar with count and time left, or the count alone
// where the end is not known. It appears on a terminal only, once the work takes longer than a moment, and is wiped
// when the object goes.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace phnctl {

class Progress
{
public:
    // `doing` as in "reading contacts"; total 0: unknown.
    Progress(std::string doing, std::size_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Another one is done.
    void Step();

private:
    using Clock = std::chrono::steady_clock;

    void Draw(Clock::time_point now);

    const std::string m_doing;
    const std::size_t m_total;
    const unsigned m_width;
    const Clock::time_point m_start = Clock::now();
    Clock::time_point m_drawn = m_start;
    std::size_t m_done = 0;
    bool m_isShown = false;
};

} // namespace phnctl
