// Small objects that come and go with each exchange, such as the event of an operation: their memory is kept for the
// next ones.
#pragma once

#include <memory>
#include <memory_resource>
#include <utility>

namespace platform {

// Never destroyed: such objects may outlive the program's own.
inline std::pmr::memory_resource* RecycledMemory()
{
    static auto& memory = *new std::pmr::synchronized_pool_resource;
    return &memory;
}

template <typename T, typename... Arguments>
std::shared_ptr<T> MakeRecycled(Arguments&&... arguments)
{
    return std::allocate_shared<T>(std::pmr::polymorphic_allocator<T>(RecycledMemory()),
                                   std::forward<Arguments>(arguments)...);
}

} // namespace platform
