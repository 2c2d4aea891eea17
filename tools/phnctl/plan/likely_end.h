// Where a search through the indexes may end before the handset's last one: when as many entries were found as the
// handset counts, or else behind a run of indexes without an entry that is much longer than any before. Used to show
// entries; what writes or keeps entries asks every index.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace phnctl {

class LikelyEnd
{
public:
    // How many entries the handset counts; nothing where it does not, or where nobody knows what its numbers mean.
    explicit LikelyEnd(std::optional<std::uint32_t> counted) : m_counted(counted) {}

    // One that is not reached, however the entries lie.
    static LikelyEnd Never() { return LikelyEnd(std::numeric_limits<std::uint32_t>::max()); }

    // What the next index holds.
    void Found();
    void NotRead();
    void Empty() { ++m_run; }

    bool IsReached() const;
    // Why nothing further is likely: "the 44 contacts that the handset counts were found".
    std::string Why(const std::string& one, const std::string& many) const;

private:
    const std::optional<std::uint32_t> m_counted;
    std::size_t m_found = 0;
    std::size_t m_run = 0; // of indexes without an entry
    std::size_t m_longestRun = 0;
};

} // namespace phnctl
