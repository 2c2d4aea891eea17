#include "modules/module_names.h"

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
    Dl_info info{};
    if (!dladdr(module, &info))
        return;
    module->module = static_cast<HMODULE>(info.dli_fbase);
    module->file = info.dli_fname;
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

HMODULE NamedModule(const char* name)
{
    const std::lock_guard guard(namesMutex);
    for (const PhnModuleName* module = firstName; module; module = module->next) {
        if (strcasecmp(module->name, name) == 0)
            return module->module;
    }
    return nullptr;
}

bool IsRefused(HMODULE handle)
{
    const std::lock_guard guard(namesMutex);
    for (const PhnModuleName* module = firstName; module; module = module->next) {
        if (module->module == handle)
            return module->isRefused != 0;
    }
    return false;
}

bool IsBesideModule(const std::string& path)
{
    const std::lock_guard guard(namesMutex);
    for (const PhnModuleName* module = firstName; module; module = module->next) {
        if (FolderOf(module->file) == FolderOf(path))
            return true;
    }
    return false;
}

} // namespace platform
