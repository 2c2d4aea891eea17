// A key under HKEY_LOCAL_MACHINE, opened for reading. Whoever may write the registry decides what stands in it: nothing
// is taken for a string that is not one, and no value's length is trusted.
#pragma once

#include <string>

#include <windows.h>

class CRegistryKey
{
public:
    explicit CRegistryKey(const std::string& strPath);
    ~CRegistryKey();
    CRegistryKey(const CRegistryKey&) = delete;
    CRegistryKey& operator=(const CRegistryKey&) = delete;

    bool IsOpen() const { return m_hKey != nullptr; }

    // A string value of at most 259 characters.
    bool ReadString(const std::string& strName, std::string* pstrValue) const;

    // The name of the value at this index; false after the last.
    bool GetValueName(DWORD dwIndex, std::string* pstrName) const;

private:
    HKEY m_hKey = nullptr;
};
