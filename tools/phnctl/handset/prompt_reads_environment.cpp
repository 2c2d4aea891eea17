#include "phnctl/handset/prompt_reads.h"

#include <cstdlib>
#include <windows.h>

namespace phnctl {

namespace {

// In a registry file or in the environment.
bool IsSet()
{
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Norvik\\LinkDesk", 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    const LSTATUS status = RegQueryValueExA(key, "Prompt Reads", nullptr, nullptr, nullptr, nullptr);
    RegCloseKey(key);
    return status == ERROR_SUCCESS;
}

} // namespace

void ChooseReads(bool slow)
{
    if (slow || !IsSet())
        setenv("PHNNRV_PROMPT_READS", slow ? "0" : "1", 1);
}

} // namespace phnctl
