#include "phnctl/handset/linux_findings.h"

#include <cstdlib>
#include <windows.h>

namespace phnctl {

std::string UsersRegistry()
{
    static const std::string files = [] {
        const char* named = std::getenv("PHNNRV_REGISTRY");
        return named ? named : "/etc/phnnrv.reg";
    }();
    return files;
}

// Of a key that is nowhere, a registry that could be read says just that.
std::vector<Finding> FindRegistryProblem()
{
    HKEY key = nullptr;
    switch (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "no key", 0, KEY_READ, &key)) {
    case ERROR_BADDB:
        return {
            {"registry", "unusable",
             UsersRegistry() + " is no registry file: it begins neither with REGEDIT4 nor with Windows Registry "
                               "Editor Version 5.00, and none of its values holds",
             "make REGEDIT4 its first line if it is meant to be one (UTF-16 has to be little-endian with a byte order "
             "mark), or move it away"}};
    case ERROR_CANTREAD:
        return {{"registry", "unusable",
                 UsersRegistry() + " cannot be read by this user, is no regular file or is larger than 1 MiB, and none "
                                   "of its values holds",
                 "make it a plain file that this user may read, or move it away"}};
    case ERROR_SUCCESS:
        RegCloseKey(key);
        break;
    }
    return {};
}

} // namespace phnctl
