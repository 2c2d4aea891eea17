// The library as a host loads it, and its exports by their names.
#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

#include "phnnrv.h"

namespace soak {

class Library
{
public:
    explicit Library(const std::string& path) : module_(LoadLibraryA(path.c_str()))
    {
        if (!module_)
            throw std::runtime_error("the library does not load: " + std::to_string(GetLastError()));
    }
    ~Library() { FreeLibrary(module_); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    void* Find(const char* name) const
    {
        void* const address = reinterpret_cast<void*>(GetProcAddress(module_, name));
        if (!address)
            throw std::runtime_error(std::string("not exported: ") + name);
        return address;
    }

private:
    HMODULE module_;
};

} // namespace soak

// The export of this name in a library.
#define SOAK_EXPORT(library, name) (*reinterpret_cast<decltype(&name)>((library).Find(#name)))
