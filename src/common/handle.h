// Owners of Win32 handles. CUniqueHandle holds one handle of the kind that its traits describe and closes it once;
// CHandle is the one for kernel objects and CRegistryKey the one for open registry keys. Both of the values that Win32
// uses for "no kernel handle" count as empty.
#pragma once

#include <new>
#include <utility>

#include <windows.h>

template <typename Traits>
class CUniqueHandle
{
public:
    using Type = typename Traits::Type;

    CUniqueHandle() = default;
    explicit CUniqueHandle(Type hValue) noexcept : m_hValue(hValue) {}
    CUniqueHandle(CUniqueHandle&& Other) noexcept : m_hValue(Other.Release()) {}
    CUniqueHandle& operator=(CUniqueHandle&& Other) noexcept
    {
        Reset(Other.Release());
        return *this;
    }
    ~CUniqueHandle() { Reset(); }

    explicit operator bool() const noexcept { return Traits::IsValid(m_hValue); }
    Type Get() const noexcept { return m_hValue; }
    Type Release() noexcept { return std::exchange(m_hValue, Type{}); }
    void Reset(Type hValue = Type{}) noexcept
    {
        Type hOld = std::exchange(m_hValue, hValue);
        if (Traits::IsValid(hOld))
            Traits::Close(hOld);
    }

private:
    Type m_hValue{};
};

struct CKernelHandleTraits
{
    using Type = HANDLE;
    static bool IsValid(HANDLE hValue) { return hValue && hValue != INVALID_HANDLE_VALUE; }
    static void Close(HANDLE hValue) { CloseHandle(hValue); }
};
using CHandle = CUniqueHandle<CKernelHandleTraits>;

struct CRegistryKeyTraits
{
    using Type = HKEY;
    static bool IsValid(HKEY hKey) { return hKey; }
    static void Close(HKEY hKey) { RegCloseKey(hKey); }
};
using CRegistryKey = CUniqueHandle<CRegistryKeyTraits>;

// The calling thread, for other threads to use; empty when the system has no handle left.
inline CHandle OpenOwnThread() noexcept
{
    HANDLE hThread = nullptr;
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &hThread, 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
    return CHandle(hThread);
}

// A manual-reset event for an object that cannot do without; throws std::bad_alloc when the system has none left.
inline CHandle MakeEvent()
{
    CHandle evNew(CreateEventA(nullptr, TRUE, FALSE, nullptr));
    if (!evNew)
        throw std::bad_alloc();
    return evNew;
}
