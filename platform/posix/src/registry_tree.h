// The registry as it was in its file at one time: HKEY_LOCAL_MACHINE's keys and their values, found without regard to
// case. Made by ParseRegistry from the text of a REGEDIT4 file; used by the registry calls, which replace it as a
// whole.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <windows.h>

namespace platform {

// ASCII letters only: other bytes belong to a code page.
std::string LowerCase(std::string_view text);

struct RegistryValue
{
    std::string name;
    DWORD type = REG_NONE;
    std::string data; // a string with its terminator
};

class RegistryKey
{
public:
    const std::vector<RegistryValue>& Values() const { return values_; }

    // Null if there is no such value. The name of the key's default value is empty.
    const RegistryValue* Find(std::string_view name) const;

    void Set(RegistryValue value);

private:
    std::vector<RegistryValue> values_; // in the order in which their names first came
    std::unordered_map<std::string, size_t> indexes_;
};

// By lower-case path under HKEY_LOCAL_MACHINE, whose own path is empty. Every key's ancestors are there.
using RegistryTree = std::map<std::string, RegistryKey>;

// Lines that make no sense are passed over; a text that is no REGEDIT4 file gives an empty tree.
RegistryTree ParseRegistry(std::string_view text);

} // namespace platform
