// Window classes, each known by its name and the module that registered it.
#include <strings.h>

#include <algorithm>
#include <vector>

#include "base/win32_call.h"
#include "messages/window.h"

using namespace platform;

namespace {

constexpr ATOM kFirstAtom = 0xC000;

// Under the base lock. Never destroyed: threads may still create windows while the process ends.
std::vector<std::shared_ptr<WindowClass>>& Classes()
{
    static auto& classes = *new std::vector<std::shared_ptr<WindowClass>>;
    return classes;
}

bool IsAtom(const char* name)
{
    return reinterpret_cast<uintptr_t>(name) <= 0xFFFF;
}

ATOM Register(const char* name, HINSTANCE instance, WNDPROC procedure)
{
    if (IsAtom(name) || !*name || !procedure)
        throw Win32Error{ERROR_INVALID_PARAMETER};
    static ATOM lastAtom = kFirstAtom - 1;
    const Lock lock = TakeBaseLock();
    if (FindWindowClass(lock, name, instance))
        throw Win32Error{ERROR_CLASS_ALREADY_EXISTS};
    lastAtom = lastAtom == 0xFFFF ? kFirstAtom : static_cast<ATOM>(lastAtom + 1);
    Classes().push_back(std::make_shared<WindowClass>(WindowClass{name, instance, procedure, lastAtom}));
    return lastAtom;
}

} // namespace

std::shared_ptr<WindowClass> platform::FindWindowClass(const Lock&, const char* nameOrAtom, HINSTANCE instance)
{
    const auto found = std::ranges::find_if(Classes(), [&](const auto& known) {
        return known->instance == instance &&
               (IsAtom(nameOrAtom) ? known->atom == reinterpret_cast<uintptr_t>(nameOrAtom)
                                   : strcasecmp(known->name.c_str(), nameOrAtom) == 0);
    });
    return found == Classes().end() ? nullptr : *found;
}

ATOM WINAPI RegisterClassA(const WNDCLASSA* lpWndClass)
{
    return Win32Call(Call::RegisterClassA, ATOM{0}, [&] {
        if (!lpWndClass)
            throw Win32Error{ERROR_INVALID_PARAMETER};
        return Register(lpWndClass->lpszClassName, lpWndClass->hInstance, lpWndClass->lpfnWndProc);
    });
}

BOOL WINAPI UnregisterClassA(LPCSTR lpClassName, HINSTANCE hInstance)
{
    return Win32Call(Call::UnregisterClassA, FALSE, [&] {
        const Lock lock = TakeBaseLock();
        const auto known = FindWindowClass(lock, lpClassName, hInstance);
        if (!known)
            throw Win32Error{ERROR_CLASS_DOES_NOT_EXIST};
        if (known->windows > 0)
            throw Win32Error{ERROR_CLASS_HAS_WINDOWS};
        std::erase(Classes(), known);
        return TRUE;
    });
}
