// The registry's calls, all of which read. An open key is a path that is looked up again when the registry has changed,
// so that a change of the file shows at once; where the path is found gone, the key counts as deleted for good, though
// it be made anew. An enumeration goes through the values as they were at its index 0. The serial-port map is made from
// the device directory.
#include <algorithm>
#include <cstring>
#include <mutex>

#include "base/lower_case.h"
#include "base/win32_call.h"
#include "devices/device_directory.h"
#include "registry/registry_file.h"
#include "threads/handle_table.h"

using namespace platform;

namespace {

constexpr char kSerialMap[] = "hardware\\devicemap\\serialcomm";

std::shared_ptr<const RegistryKey> SerialMap()
{
    auto map = std::make_shared<RegistryKey>();
    for (std::string& name : DeviceNames(DeviceDirectory())) {
        if (InterfaceClassOf(name))
            continue;
        std::ranges::transform(name, name.begin(),
                               [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
        map->Set({"\\Device\\Serial" + std::to_string(map->Values().size()), REG_SZ, name + '\0'});
    }
    return map;
}

// Null if there is no such key.
std::shared_ptr<const RegistryKey> FindKey(const std::string& path, std::shared_ptr<const Registry> registry)
{
    if (path == kSerialMap)
        return SerialMap();
    const auto found = registry->keys.find(path);
    return found == registry->keys.end() ? nullptr
                                         : std::shared_ptr<const RegistryKey>(std::move(registry), &found->second);
}

// Copies a value's data and type to where the caller wants them.
LONG Deliver(const RegistryValue& value, DWORD* type, BYTE* data, DWORD* size)
{
    if (type)
        *type = value.type;
    if (!size)
        return ERROR_SUCCESS;
    const DWORD room = *size;
    *size = static_cast<DWORD>(value.data.size());
    if (data && room < *size)
        return ERROR_MORE_DATA;
    if (data)
        std::memcpy(data, value.data.data(), value.data.size());
    return ERROR_SUCCESS;
}

struct OpenKey : Object
{
    explicit OpenKey(std::string lowerCasePath) : path(std::move(lowerCasePath))
    {
        RenewRegistry(registry);
        key = FindKey(path, registry);
        if (!key)
            throw Win32Error{registry->missing};
    }

    // The key as it is now.
    const std::shared_ptr<const RegistryKey>& Look()
    {
        if (key && (RenewRegistry(registry) || path == kSerialMap))
            key = FindKey(path, registry);
        if (!key)
            throw Win32Error{ERROR_KEY_DELETED};
        return key;
    }

    const std::string path;
    std::mutex mutex; // for the rest; held while the registry's own is taken
    std::shared_ptr<const Registry> registry;
    std::shared_ptr<const RegistryKey> key; // null once it is deleted
    std::shared_ptr<const RegistryKey> enumerated;
};

std::shared_ptr<OpenKey> KeyOf(HKEY key)
{
    return key == HKEY_LOCAL_MACHINE ? std::make_shared<OpenKey>("") : FromHandle<OpenKey>(key);
}

} // namespace

LSTATUS WINAPI RegOpenKeyExA(HKEY hKey, LPCSTR lpSubKey, DWORD, DWORD, PHKEY phkResult)
{
    return Win32Status(Call::RegOpenKeyExA, [&]() -> LONG {
        if (!phkResult)
            return ERROR_INVALID_PARAMETER;
        *phkResult = nullptr;
        std::string path = KeyOf(hKey)->path;
        if (lpSubKey && *lpSubKey) {
            if (!path.empty())
                path += '\\';
            path += LowerCase(lpSubKey);
        }
        if (path.ends_with('\\'))
            path.pop_back();
        *phkResult = static_cast<HKEY>(NewHandle(std::make_shared<OpenKey>(std::move(path))));
        return ERROR_SUCCESS;
    });
}

LSTATUS WINAPI RegQueryValueExA(HKEY hKey, LPCSTR lpValueName, LPDWORD lpReserved, LPDWORD lpType, LPBYTE lpData,
                                LPDWORD lpcbData)
{
    return Win32Status(Call::RegQueryValueExA, [&]() -> LONG {
        if (lpReserved || (lpData && !lpcbData))
            return ERROR_INVALID_PARAMETER;
        const auto open = KeyOf(hKey);
        const std::lock_guard guard(open->mutex);
        const RegistryValue* const value = open->Look()->Find(lpValueName ? lpValueName : "");
        return value ? Deliver(*value, lpType, lpData, lpcbData) : LONG{ERROR_FILE_NOT_FOUND};
    });
}

LSTATUS WINAPI RegEnumValueA(HKEY hKey, DWORD dwIndex, LPSTR lpValueName, LPDWORD lpcchValueName, LPDWORD lpReserved,
                             LPDWORD lpType, LPBYTE lpData, LPDWORD lpcbData)
{
    return Win32Status(Call::RegEnumValueA, [&]() -> LONG {
        if (!lpValueName || !lpcchValueName || lpReserved || (lpData && !lpcbData))
            return ERROR_INVALID_PARAMETER;
        const auto open = KeyOf(hKey);
        const std::lock_guard guard(open->mutex);
        if (dwIndex == 0 || !open->enumerated)
            open->enumerated = open->Look();
        if (dwIndex >= open->enumerated->Values().size())
            return ERROR_NO_MORE_ITEMS;
        const RegistryValue& value = open->enumerated->Values()[dwIndex];
        if (*lpcchValueName <= value.name.size())
            return ERROR_MORE_DATA;
        std::memcpy(lpValueName, value.name.c_str(), value.name.size() + 1);
        *lpcchValueName = static_cast<DWORD>(value.name.size());
        return Deliver(value, lpType, lpData, lpcbData);
    });
}

LSTATUS WINAPI RegCloseKey(HKEY hKey)
{
    return Win32Status(Call::RegCloseKey, [&]() -> LONG {
        if (hKey != HKEY_LOCAL_MACHINE)
            FreeHandleOf<OpenKey>(hKey);
        return ERROR_SUCCESS;
    });
}
