#include "phnctl/cli/progress.h"

#include "system/system.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace phnctl {

namespace {

constexpr auto kBetweenDrawings = std::chrono::milliseconds(200);
constexpr std::size_t kBarLength = 20;

std::string TimeLeft(std::chrono::duration<double> passed, std::size_t done, std::size_t total)
{
    const double perEntry = passed.count() / static_cast<double>(done);
    const long seconds = std::lround(perEntry * static_cast<double>(total - done));
    return seconds < 60 ? fmt::format("{} s left", seconds)
                        : fmt::format("{} min {} s left", seconds / 60, seconds % 60);
}

} // namespace

Progress::Progress(std::string doing, std::size_t total)
    : m_doing(std::move(doing)), m_total(total), m_width(host::TerminalWidth(stderr))
{
}

Progress::~Progress()
{
    if (m_isShown)
        fmt::print(stderr, "\r\033[K");
}

void Progress::Step()
{
    ++m_done;
    if (m_width == 0)
        return;
    const auto now = Clock::now();
    if (now - m_drawn >= kBetweenDrawings)
        Draw(now);
}

void Progress::Draw(Clock::time_point now)
{
    m_drawn = now;
    m_isShown = true;
    std::string line = fmt::format("{}: {}", m_doing, m_done);
    if (m_total != 0) {
        const std::size_t filled = kBarLength * std::min(m_done, m_total) / m_total;
        line = fmt::format("{} [{:#<{}}{:.<{}}] {} of {}, {}", m_doing, "", filled, "", kBarLength - filled, m_done,
                           m_total, TimeLeft(now - m_start, m_done, std::max(m_done, m_total)));
    }
    fmt::print(stderr, "\r{}\033[K", line.substr(0, m_width - 1));
    std::fflush(stderr);
}

} // namespace phnctl
