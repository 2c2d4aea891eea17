#if PHN_TEST_HOOKS

#include "section_order.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <mutex>
#include <span>

#include "phn_platform_test.h"

namespace platform {
namespace {

using platform_test::NestedSections;

// Room that is never too small takes the place of memory that may be short: entering a section cannot fail.
template <typename T, std::size_t kSize>
class FixedList
{
public:
    std::span<const T> Items() const { return {m_items.data(), m_count}; }

    void Add(const T& item)
    {
        if (m_count == kSize)
            std::abort();
        m_items[m_count++] = item;
    }

    void Remove(const T& item) // the newest of its kind
    {
        const std::span<T> items(m_items.data(), m_count);
        const auto newest = std::find(items.rbegin(), items.rend(), item);
        std::copy(newest.base(), items.end(), newest.base() - 1);
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
    const bool isEnteredAgain = std::ranges::count(held.Items(), section) != 0;
    held.Add(section);
    if (isEnteredAgain)
        return; // nobody waits for what is its own
    const std::lock_guard guard(nestedMutex);
    for (const CRITICAL_SECTION* const outer : held.Items())
        if (const NestedSections pair{outer, section};
            outer != section && std::ranges::count(nested.Items(), pair) == 0)
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
    const auto items = platform::nested.Items();
    return {items.begin(), items.end()};
}

} // namespace platform_test

#endif
