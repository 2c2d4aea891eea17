#include "phnctl/plan/likely_end.h"

#include "phnctl/text/counted.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace {

constexpr std::size_t kShortestRun = 32;

} // namespace

void LikelyEnd::Found()
{
    ++m_found;
    NotRead();
}

// It may hold an entry, so that no run goes through it.
void LikelyEnd::NotRead()
{
    m_longestRun = std::max(m_longestRun, m_run);
    m_run = 0;
}

// A store that nothing was found in yet has not shown where its entries begin.
bool LikelyEnd::IsReached() const
{
    if (m_counted)
        return m_found >= *m_counted;
    return m_found != 0 && m_run >= std::max(kShortestRun, 2 * m_longestRun);
}

std::string LikelyEnd::Why(const std::string& one, const std::string& many) const
{
    return m_counted ? fmt::format("The {} that the handset counts were found", Counted(*m_counted, one, many))
                     : fmt::format("The last {} indexes that were asked hold no {}", m_run, one);
}

} // namespace phnctl
