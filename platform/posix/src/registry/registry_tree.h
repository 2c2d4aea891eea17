// The registry as it was in its file at one time: HKEY_LOCAL_MACHINE's keys and their values, found without regard to
// case. Made by AddRegistry from the texts of .reg files; used by the registry calls, which replace it as a whole.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <windows.h>

namespace platform {

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

// Puts a file's values over those that are there. Lines that make no sense are passed over. False, with the tree as it
// was, if the first line is neither REGEDIT4 nor Windows Registry Editor Version 5.00.
[[nodiscard]] bool AddRegistry(std::string_view text, RegistryTree& tree);

} // namespace platform
