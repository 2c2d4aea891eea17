#include "threads/section_order.h"

#if PHN_NOTES_LOCKS

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <span>
#include <stdexcept>

#include "phn_platform_test.h"
#include "threads/mutex.h"

namespace platform {
namespace {

using platform_test::NestedLocks;

// What has no room any more is left out, as taking a lock must not fail.
template <typename T, std::size_t kSize>
class FixedList
{
public:
    std::span<const T> Items() const { return {items_.data(), count_}; }

    void Add(const T& item)
    {
        isFull_ = isFull_ || count_ == kSize;
        if (count_ < kSize)
            items_[count_++] = item;
    }
    bool HasLeftOut() const { return isFull_; }

    void Remove(const T& item) // the newest of its kind
    {
        const std::span<T> items(items_.data(), count_);
        const auto newest = std::find(items.rbegin(), items.rend(), item);
        if (newest == items.rend())
            return;
        std::copy(newest.base(), items.end(), newest.base() - 1);
        count_--;
    }

private:
    std::array<T, kSize> items_{};
    std::size_t count_ = 0;
    bool isFull_ = false;
};

thread_local constinit FixedList<const void*, 32> held;
constinit std::mutex nestedMutex;
constinit FixedList<NestedLocks, 256> nested;
constinit std::atomic<bool> wereTooManyHeld{false};

} // namespace

void NoteTaken(const void* lock) noexcept
{
    const bool isTakenAgain = std::ranges::count(held.Items(), lock) != 0;
    held.Add(lock);
    if (held.HasLeftOut())
        wereTooManyHeld = true;
    if (isTakenAgain || held.Items().size() == 1)
        return; // nobody waits for what is its own
    const std::lock_guard guard(nestedMutex);
    for (const void* const outer : held.Items())
        if (const NestedLocks pair{outer, lock}; outer != lock && std::ranges::count(nested.Items(), pair) == 0)
            nested.Add(pair);
}

void NoteLeft(const void* lock) noexcept
{
    held.Remove(lock);
}

} // namespace platform

namespace platform_test {

std::vector<NestedLocks> LockOrder()
{
    const std::lock_guard guard(platform::nestedMutex);
    if (platform::nested.HasLeftOut() || platform::wereTooManyHeld)
        throw std::length_error("more nested locks than there is room for");
    const auto items = platform::nested.Items();
    return {items.begin(), items.end()};
}

std::size_t HeldLocks()
{
    return platform::held.Items().size();
}

const void* LockOf(HANDLE mutex)
{
    return platform::FromHandle<platform::Mutex>(mutex).get();
}

} // namespace platform_test

#endif
