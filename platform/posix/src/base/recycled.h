// Small objects that come and go with each exchange, such as the event of an operation: their memory is kept for the
// next ones. The standard's pools are no help: those of libstdc++ 12 crash once an allocation of theirs has failed.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

namespace platform {

// For single objects of one type at a time; what is kept stays so to the program's end.
template <typename T>
class RecyclingAllocator
{
public:
    using value_type = T;

    RecyclingAllocator() = default;
    template <typename Other>
    RecyclingAllocator(const RecyclingAllocator<Other>&) noexcept
    {
    }

    T* allocate(std::size_t)
    {
        {
            const std::lock_guard guard(mutex_);
            if (kept_)
                return reinterpret_cast<T*>(std::exchange(kept_, kept_->next));
        }
        return static_cast<T*>(::operator new(std::max(sizeof(T), sizeof(Kept))));
    }

    void deallocate(T* memory, std::size_t) noexcept
    {
        const std::lock_guard guard(mutex_);
        kept_ = new (memory) Kept{kept_};
    }

    friend bool operator==(const RecyclingAllocator&, const RecyclingAllocator&) { return true; }

private:
    struct Kept
    {
        Kept* next;
    };

    static_assert(alignof(T) <= alignof(std::max_align_t) && alignof(Kept) <= alignof(std::max_align_t));

    static inline std::mutex mutex_; // a leaf
    static inline Kept* kept_ = nullptr;
};

template <typename T, typename... Arguments>
std::shared_ptr<T> MakeRecycled(Arguments&&... arguments)
{
    return std::allocate_shared<T>(RecyclingAllocator<T>(), std::forward<Arguments>(arguments)...);
}

} // namespace platform
