#include "link/machine_key.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr DWORD kMaximumValueName = 16383;

} // namespace

CMachineKey::CMachineKey(const std::string& strPath)
{
    HKEY hKey = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, strPath.c_str(), 0, KEY_READ, &hKey) == ERROR_SUCCESS)
        m_hKey.Reset(hKey);
}

bool CMachineKey::ReadString(const std::string& strName, std::string* pstrValue) const
{
    std::array<char, 260> szValue{};
    DWORD dwType = REG_NONE;
    DWORD dwSize = szValue.size();
    if (!m_hKey ||
        RegQueryValueExA(m_hKey.Get(), strName.c_str(), nullptr, &dwType, reinterpret_cast<BYTE*>(szValue.data()),
                         &dwSize) != ERROR_SUCCESS ||
        dwType != REG_SZ)
        return false;
    // The terminator need not be stored.
    pstrValue->assign(szValue.data(), strnlen(szValue.data(), std::min<size_t>(dwSize, szValue.size() - 1)));
    return true;
}

bool CMachineKey::GetValueName(DWORD dwIndex, std::string* pstrName) const
{
    std::string strName(kMaximumValueName + 1, '\0');
    DWORD dwLength = kMaximumValueName + 1;
    if (!m_hKey || RegEnumValueA(m_hKey.Get(), dwIndex, strName.data(), &dwLength, nullptr, nullptr, nullptr,
                                 nullptr) != ERROR_SUCCESS)
        return false;
    strName.resize(dwLength);
    *pstrName = std::move(strName);
    return true;
}
