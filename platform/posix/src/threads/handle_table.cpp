#include "threads/handle_table.h"

#include <cstdint>
#include <mutex>
#include <vector>

#include "threads/thread_record.h"

namespace platform {

// A handle's number holds a slot's index and the generation of its use; the two lowest bits are zero.
class HandleTable
{
public:
    HANDLE Add(std::shared_ptr<Object> object)
    {
        const std::lock_guard guard(mutex_);
        if (free_.empty())
            Grow();
        const std::uint32_t index = free_.back();
        free_.pop_back();
        object->handles_++;
        slots_[index].object = std::move(object);
        return ToHandle(index);
    }

    std::shared_ptr<Object> Find(HANDLE handle)
    {
        const std::lock_guard guard(mutex_);
        return slots_[IndexOf(handle)].object;
    }

    // The object, if this was its last handle.
    std::shared_ptr<Object> Remove(HANDLE handle, std::shared_ptr<Object>& held)
    {
        const std::lock_guard guard(mutex_);
        const std::uint32_t index = IndexOf(handle);
        free_.push_back(index);
        slots_[index].generation = slots_[index].generation % kGenerations + 1;
        held = std::move(slots_[index].object);
        return --held->handles_ == 0 ? held : nullptr;
    }

private:
    static constexpr std::uint32_t kIndexBits = 16;
    static constexpr std::uint32_t kGenerations = 0xFFF;

    struct Slot
    {
        std::shared_ptr<Object> object;
        std::uint32_t generation = 1;
    };

    void Grow()
    {
        if (slots_.size() >> kIndexBits)
            throw Win32Error{ERROR_NO_SYSTEM_RESOURCES};
        free_.reserve(slots_.size() + 1); // so that Remove cannot fail
        slots_.emplace_back();
        free_.push_back(static_cast<std::uint32_t>(slots_.size() - 1));
    }

    HANDLE ToHandle(std::uint32_t index) const
    {
        const std::uintptr_t number = (slots_[index].generation << kIndexBits | index) << 2;
        return reinterpret_cast<HANDLE>(number);
    }

    std::uint32_t IndexOf(HANDLE handle) const
    {
        const auto number = reinterpret_cast<std::uintptr_t>(handle);
        const auto index = static_cast<std::uint32_t>(number >> 2 & ((1u << kIndexBits) - 1));
        if (index >= slots_.size() || !slots_[index].object || ToHandle(index) != handle)
            throw Win32Error{ERROR_INVALID_HANDLE};
        return index;
    }

    std::mutex mutex_;
    std::vector<Slot> slots_;
    std::vector<std::uint32_t> free_;
};

namespace {

HandleTable& Table()
{
    static HandleTable& table = *new HandleTable;
    return table;
}

} // namespace

HANDLE NewHandle(std::shared_ptr<Object> object)
{
    return Table().Add(std::move(object));
}

std::shared_ptr<Object> ObjectOf(HANDLE handle)
{
    if (handle == GetCurrentThread())
        return CurrentThread();
    return Table().Find(handle);
}

void FreeHandle(HANDLE handle)
{
    std::shared_ptr<Object> held;
    if (const auto last = Table().Remove(handle, held))
        last->OnLastHandleClosed();
}

} // namespace platform
