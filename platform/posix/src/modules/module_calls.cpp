// Modules. A module's handle is the address at which it is loaded. Loaded modules are found by walking the dynamic
// linker's list, which is safe while a module is being loaded or unloaded: the library asks for its own then.
#include <dlfcn.h>
#include <link.h>
#include <stdlib.h>
#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/win32_call.h"
#include "modules/module_names.h"

using namespace platform;

namespace {

// Nothing is allocated to find one: unloading must not fail for want of memory.
struct Module
{
    HMODULE handle = nullptr;
    const char* name = ""; // as it was loaded; empty for the program. It goes with the module.
};

// The first loaded module that fits; a null handle if none does. The program comes first.
Module FindModule(const std::function<bool(const Module&)>& fits)
{
    struct Search
    {
        const std::function<bool(const Module&)>& fits;
        Module found;
    } search{fits, {}};
    dl_iterate_phdr(
        [](dl_phdr_info* info, size_t, void* context) {
            const auto* const end = info->dlpi_phdr + info->dlpi_phnum;
            const auto* const first = std::find_if(info->dlpi_phdr, end, [](auto& p) { return p.p_type == PT_LOAD; });
            if (first == end)
                return 0;
            const auto page = static_cast<uintptr_t>(getpagesize());
            const uintptr_t base = (info->dlpi_addr + first->p_vaddr) & ~(page - 1);
            const Module module{reinterpret_cast<HMODULE>(base), info->dlpi_name};
            auto& current = *static_cast<Search*>(context);
            if (!current.fits(module))
                return 0;
            current.found = module;
            return 1;
        },
        &search);
    return search.found;
}

Module ModuleOf(HMODULE handle)
{
    Module module = FindModule([=](const Module& m) { return !handle || m.handle == handle; });
    if (!module.handle)
        throw Win32Error{ERROR_MOD_NOT_FOUND};
    return module;
}

HMODULE BaseOf(const void* address)
{
    Dl_info info{};
    if (!dladdr(address, &info))
        throw Win32Error{ERROR_MOD_NOT_FOUND};
    return static_cast<HMODULE>(info.dli_fbase);
}

HMODULE LoadedModule(const char* name)
{
    if (!name)
        return ModuleOf(nullptr).handle;
    if (const HMODULE module = NamedModule(name))
        return module;
    const std::string file = name;
    const bool isPath = file.find('/') != file.npos;
    const Module module = FindModule([&](const Module& m) {
        const std::string_view loaded = m.name;
        return loaded == file || (!isPath && loaded.size() > file.size() && loaded.ends_with('/' + file));
    });
    if (!module.handle)
        throw Win32Error{ERROR_MOD_NOT_FOUND};
    return module.handle;
}

std::string PathOf(const Module& module)
{
    if (*module.name == '/')
        return module.name;
    const char* const name = *module.name ? module.name : "/proc/self/exe";
    const std::unique_ptr<char, void (*)(void*)> resolved(realpath(name, nullptr), free);
    return resolved ? resolved.get() : name;
}

// One reference to a loaded module, as dlopen counts them.
std::unique_ptr<void, int (*)(void*)> Reference(HMODULE handle)
{
    const char* const name = ModuleOf(handle).name;
    void* const reference = dlopen(*name ? name : nullptr, RTLD_NOLOAD | RTLD_LAZY);
    if (!reference)
        throw Win32Error{ERROR_MOD_NOT_FOUND};
    return {reference, dlclose};
}

// The file that a module's Windows name stands for.
std::string FileOf(const char* name)
{
    return strcasecmp(name, "PHNNRV.dll") == 0 ? "libphnnrv.so.0" : name;
}

// The path without a name for the folder that depends on the current one; the file keeps its name, also if it is a
// link.
std::string AbsolutePath(const std::string& file)
{
    if (access(file.c_str(), F_OK))
        ThrowErrno();
    const size_t name = file.rfind('/') + 1;
    const std::unique_ptr<char, void (*)(void*)> folder(realpath(file.substr(0, name).c_str(), nullptr), free);
    if (!folder)
        ThrowErrno();
    return std::string(folder.get()) + '/' + file.substr(name);
}

// A library named without a path is looked for beside this one first.
void* Open(const std::string& file)
{
    if (file.find('/') != file.npos)
        return dlopen(AbsolutePath(file).c_str(), RTLD_NOW | RTLD_LOCAL);
    const std::string own = PathOf(ModuleOf(BaseOf(reinterpret_cast<const void*>(&GetModuleHandleA))));
    const std::string beside = own.substr(0, own.rfind('/') + 1) + file;
    const bool isBeside = access(beside.c_str(), F_OK) == 0;
    return dlopen(isBeside ? beside.c_str() : file.c_str(), RTLD_NOW | RTLD_LOCAL);
}

} // namespace

HMODULE WINAPI GetModuleHandleA(LPCSTR lpModuleName)
{
    return Win32Call(Call::GetModuleHandleA, HMODULE{}, [&] { return LoadedModule(lpModuleName); });
}

BOOL WINAPI GetModuleHandleExA(DWORD dwFlags, LPCSTR lpModuleName, HMODULE* phModule)
{
    return Win32Call(Call::GetModuleHandleExA, FALSE, [&] {
        constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
        if (dwFlags != kFlags || !phModule)
            throw Win32Error{ERROR_INVALID_PARAMETER};
        *phModule = BaseOf(lpModuleName);
        return TRUE;
    });
}

DWORD WINAPI GetModuleFileNameA(HMODULE hModule, LPSTR lpFilename, DWORD nSize)
{
    return Win32Call(Call::GetModuleFileNameA, DWORD{0}, [&] {
        const std::string path = PathOf(ModuleOf(hModule));
        if (!lpFilename || nSize == 0)
            throw Win32Error{ERROR_INSUFFICIENT_BUFFER};
        const size_t length = std::min<size_t>(path.size(), nSize - 1);
        std::memcpy(lpFilename, path.data(), length);
        lpFilename[length] = '\0';
        if (length == path.size())
            return static_cast<DWORD>(length);
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return nSize;
    });
}

HMODULE WINAPI LoadLibraryA(LPCSTR lpLibFileName)
{
    return Win32Call(Call::LoadLibraryA, HMODULE{}, [&] {
        if (!lpLibFileName || !*lpLibFileName)
            throw Win32Error{ERROR_INVALID_PARAMETER};
        const std::string file = FileOf(lpLibFileName);
        void* const opened = Open(file);
        if (!opened)
            throw Win32Error{file.find('/') == file.npos ? DWORD{ERROR_MOD_NOT_FOUND} : DWORD{ERROR_BAD_EXE_FORMAT}};
        const link_map* map = nullptr;
        dlinfo(opened, RTLD_DI_LINKMAP, &map);
        const HMODULE module = BaseOf(map->l_ld);
        if (IsRefused(module)) {
            dlclose(opened);
            throw Win32Error{ERROR_DLL_INIT_FAILED};
        }
        return module;
    });
}

BOOL WINAPI FreeLibrary(HMODULE hLibModule)
{
    return Win32Call(Call::FreeLibrary, FALSE, [&] {
        if (!hLibModule)
            throw Win32Error{ERROR_INVALID_HANDLE};
        dlclose(Reference(hLibModule).get()); // the caller's reference, and then this one's
        return TRUE;
    });
}

FARPROC WINAPI GetProcAddress(HMODULE hModule, LPCSTR lpProcName)
{
    return Win32Call(Call::GetProcAddress, FARPROC{}, [&] {
        constexpr uintptr_t kOrdinals = 0xFFFF;
        void* const symbol =
            reinterpret_cast<uintptr_t>(lpProcName) > kOrdinals ? dlsym(Reference(hModule).get(), lpProcName) : nullptr;
        // dlsym looks into what the module depends on as well.
        if (!symbol || BaseOf(symbol) != ModuleOf(hModule).handle)
            throw Win32Error{ERROR_PROC_NOT_FOUND};
        return reinterpret_cast<FARPROC>(symbol);
    });
}

BOOL WINAPI GetVersionExA(LPOSVERSIONINFOA lpVersionInformation)
{
    return Win32Call(Call::GetVersionExA, FALSE, [&] {
        if (!lpVersionInformation || lpVersionInformation->dwOSVersionInfoSize != sizeof *lpVersionInformation)
            throw Win32Error{ERROR_INSUFFICIENT_BUFFER};
        *lpVersionInformation = {.dwOSVersionInfoSize = sizeof *lpVersionInformation,
                                 .dwMajorVersion = 6,
                                 .dwMinorVersion = 2,
                                 .dwBuildNumber = 9200,
                                 .dwPlatformId = VER_PLATFORM_WIN32_NT,
                                 .szCSDVersion = {}};
        return TRUE;
    });
}
