// Small objects that come and go with each exchange, such as the event of an operation: their memory is kept for the
// next ones.
#pragma once

#include <memory>
#include <memory_resource>
#include <mutex>
#include <utility>

namespace platform {

// One pool behind a lock: the standard's own for several threads keeps a pool for each, and takes longer to find it.
class RecycledMemory : public std::pmr::memory_resource
{
public:
    // Never destroyed: such objects may outlive the program's own.
    static RecycledMemory* Get()
    {
        static auto& memory = *new RecycledMemory;
        return &memory;
    }

private:
    void* do_allocate(std::size_t size, std::size_t alignment) override
    {
        const std::lock_guard guard(mutex_);
        return pool_.allocate(size, alignment);
    }

    void do_deallocate(void* memory, std::size_t size, std::size_t alignment) override
    {
        const std::lock_guard guard(mutex_);
        pool_.deallocate(memory, size, alignment);
    }

    bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override { return this == &other; }

    std::mutex mutex_; // a leaf
    std::pmr::unsynchronized_pool_resource pool_;
};

template <typename T, typename... Arguments>
std::shared_ptr<T> MakeRecycled(Arguments&&... arguments)
{
    return std::allocate_shared<T>(std::pmr::polymorphic_allocator<T>(RecycledMemory::Get()),
                                   std::forward<Arguments>(arguments)...);
}

} // namespace platform
