#include "failures/allocation_faults.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <utility>

namespace {

std::atomic<bool> armed = false;
std::atomic<uint64_t> made = 0;
std::atomic<uint64_t> firstFailing = 0;
std::atomic<uint64_t> pastFailing = 0;
std::atomic<int64_t> living = 0;
thread_local bool isSpared = false;

void* Allocate(std::size_t size, std::size_t alignment = alignof(std::max_align_t)) noexcept
{
    if (armed && !isSpared) {
        const uint64_t number = made++;
        if (number >= firstFailing && number < pastFailing)
            return nullptr;
    }
    ++living;
    if (alignment <= alignof(std::max_align_t))
        return std::malloc(size ? size : 1); // to the byte, so that reading behind it is found out
    return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

void Free(void* memory) noexcept
{
    living -= memory != nullptr;
    std::free(memory);
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment = alignof(std::max_align_t))
{
    void* const memory = Allocate(size, alignment);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

} // namespace

namespace allocation_faults {

void SpareThisThread()
{
    isSpared = true;
}

void Arm(uint64_t skip, uint64_t count)
{
    made = 0;
    firstFailing = skip;
    pastFailing = skip + count < skip ? UINT64_MAX : skip + count;
    armed = true;
}

void Disarm()
{
    armed = false;
}

uint64_t Made()
{
    return made;
}

int64_t Living()
{
    return living;
}

LibraryScope::LibraryScope() : wasSpared_(std::exchange(isSpared, false)) {}

LibraryScope::~LibraryScope()
{
    isSpared = wasSpared_;
}

} // namespace allocation_faults

void* operator new(std::size_t size)
{
    return AllocateOrThrow(size);
}

void* operator new[](std::size_t size)
{
    return AllocateOrThrow(size);
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    return AllocateOrThrow(size, static_cast<std::size_t>(alignment));
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}

void operator delete(void* memory) noexcept
{
    Free(memory);
}

void operator delete[](void* memory) noexcept
{
    Free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    Free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    Free(memory);
}

void operator delete(void* memory, std::align_val_t) noexcept
{
    Free(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept
{
    Free(memory);
}
