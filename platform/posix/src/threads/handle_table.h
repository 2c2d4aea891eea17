// Handles: small numbers that name a shared object and are checked at every use. A closed handle, a foreign number or
// one of another kind is ERROR_INVALID_HANDLE; a number is not reused before the table's generations come round. The
// table's lock is a leaf, so these functions may be called with or without the base lock.
#pragma once

#include <memory>
#include <type_traits>
#include <typeinfo>

#include "base/win32_error.h"

namespace platform {

class File;
class Waitable;

class Object
{
public:
    Object() = default;
    virtual ~Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    // Called once, without any lock, when the last handle is closed; calls in progress may still hold a reference.
    virtual void OnLastHandleClosed() {}

    // Null for what is none. They spare every read, write and wait a dynamic_cast.
    virtual File* AsFile() { return nullptr; }
    virtual Waitable* AsWaitable() { return nullptr; }

private:
    friend class HandleTable;
    unsigned handles_ = 0;
};

// A new handle for the object. Several handles may name one object.
HANDLE NewHandle(std::shared_ptr<Object> object);

// The object of a handle; throws ERROR_INVALID_HANDLE.
std::shared_ptr<Object> ObjectOf(HANDLE handle);

template <typename T>
std::shared_ptr<T> FromHandle(HANDLE handle)
{
    auto object = ObjectOf(handle);
    Object& found = *object;
    T* wanted = nullptr;
    if constexpr (std::is_same_v<T, File>)
        wanted = found.AsFile();
    else if constexpr (std::is_same_v<T, Waitable>)
        wanted = found.AsWaitable();
    else
        wanted = typeid(found) == typeid(T) ? static_cast<T*>(&found) : dynamic_cast<T*>(&found);
    if (!wanted)
        throw Win32Error{ERROR_INVALID_HANDLE};
    return {std::move(object), wanted};
}

// Makes the handle invalid; throws ERROR_INVALID_HANDLE.
void FreeHandle(HANDLE handle);

// The same for a handle that must name an object of this kind.
template <typename T>
void FreeHandleOf(HANDLE handle)
{
    FromHandle<T>(handle);
    FreeHandle(handle);
}

} // namespace platform
