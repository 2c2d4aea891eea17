#if PHN_TEST_HOOKS

#include "section_order.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <mutex>

#include "phn_platform_test.h"

namespace platform {
namespace {

using platform_test::NestedSections;

// Room that is never too small takes the place of memory that may be short: entering a section cannot fail.
template <typename T, std::size_t kSize>
class FixedList
{
public:
    auto begin() { return m_items.begin(); }
    auto end() { return m_items.begin() + static_cast<std::ptrdiff_t>(m_count); }

    void Add(const T& item)
    {
        if (m_count == kSize)
            std::abort();
        m_items[m_count++] = item;
    }

    void Remove(const T& item) // the newest of its kind
    {
        const auto newest = std::find(std::reverse_iterator(end()), std::reverse_iterator(begin()), item);
        std::copy(newest.base(), end(), newest.base() - 1);
        m_count--;
    }

private:
    std::array<T, kSize> m_items{};
    std::size_t m_count = 0;
};

thread_local constinit FixedList<const CRITICAL_SECTION*, 32> held;
constinit std::mutex nestedMutex;
constinit FixedList<NestedSections, 256> nested;

} // namespace

void NoteEntered(const CRITICAL_SECTION* section) noexcept
{
    const bool isEnteredAgain = std::ranges::find(held, section) != held.end();
    held.Add(section);
    if (isEnteredAgain)
        return; // nobody waits for what is its own
    const std::lock_guard guard(nestedMutex);
    for (const CRITICAL_SECTION* const outer : held)
        if (const NestedSections pair{outer, section};
            outer != section && std::ranges::find(nested, pair) == nested.end())
            nested.Add(pair);
}

void NoteLeft(const CRITICAL_SECTION* section) noexcept
{
    held.Remove(section);
}

} // namespace platform

namespace platform_test {

std::vector<NestedSections> SectionOrder()
{
    const std::lock_guard guard(platform::nestedMutex);
    return {platform::nested.begin(), platform::nested.end()};
}

} // namespace platform_test

#endif
