// A key under HKEY_LOCAL_MACHINE, opened for reading. Whoever may write the registry decides what stands in it: nothing
// is taken for a string that is not one, and no value's length is trusted.
#pragma once

#include <string>

#include <windows.h>

#include "common/handle.h"

class CMachineKey
{
public:
    explicit CMachineKey(const std::string& strPath);

    bool IsOpen() const { return static_cast<bool>(m_hKey); }

    // A string value of at most 259 characters.
    bool ReadString(const std::string& strName, std::string* pstrValue) const;

    // The name of the value at this index; false after the last.
    bool GetValueName(DWORD dwIndex, std::string* pstrName) const;

private:
    CRegistryKey m_hKey;
};
