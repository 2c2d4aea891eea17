#include "log/setting.h"

#include "common/handle.h"

DWORD ReadSetting(const char* pszName) noexcept
{
    HKEY hOpened = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, kSettingsKey, 0, KEY_READ, &hOpened) != ERROR_SUCCESS)
        return 0;
    const CRegistryKey Key(hOpened);
    DWORD dwValue = 0;
    DWORD dwSize = sizeof dwValue;
    DWORD dwType = REG_NONE;
    const LSTATUS nStatus =
        RegQueryValueExA(Key.Get(), pszName, nullptr, &dwType, reinterpret_cast<LPBYTE>(&dwValue), &dwSize);
    return nStatus == ERROR_SUCCESS && dwType == REG_DWORD ? dwValue : 0;
}
