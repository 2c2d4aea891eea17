#include "module_names.h"

#include <dlfcn.h>
#include <strings.h>

#include <mutex>

#include "phn_platform_module.h"

namespace {

std::mutex namesMutex;
PhnModuleName* firstName;

std::string FolderOf(const std::string& path)
{
    return path.substr(0, path.rfind('/') + 1);
}

} // namespace

void PhnModuleLoaded(PhnModuleName* module)
{
    const std::lock_guard guard(namesMutex);
    PhnModuleName** last = &firstName;
    while (*last)
        last = &(*last)->next;
    *last = module;
}

void PhnModuleUnloaded(PhnModuleName* module)
{
    const std::lock_guard guard(namesMutex);
    PhnModuleName** entry = &firstName;
    while (*entry && *entry != module)
        entry = &(*entry)->next;
    if (*entry)
        *entry = module->next;
}

namespace platform {

const void* AddressInModule(const char* name)
{
    const std::lock_guard guard(namesMutex);
    for (const PhnModuleName* module = firstName; module; module = module->next) {
        if (strcasecmp(module->name, name) == 0)
            return module;
    }
    return nullptr;
}

bool IsBesideModule(const std::string& path)
{
    const std::lock_guard guard(namesMutex);
    for (const PhnModuleName* module = firstName; module; module = module->next) {
        Dl_info info{};
        if (dladdr(module, &info) && FolderOf(info.dli_fname) == FolderOf(path))
            return true;
    }
    return false;
}

} // namespace platform
