#include "log/logging_level.h"

#include "log/setting.h"

namespace {

constexpr const char* kValueName = "Logging Level";

} // namespace

// Null if there is none.
HKEY CLoggingLevel::GetKey()
{
    if (HKEY hKey = m_hKey.load())
        return hKey;
    HKEY hNew = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, kSettingsKey, 0, KEY_READ, &hNew) != ERROR_SUCCESS)
        return nullptr;
    HKEY hOther = nullptr;
    if (m_hKey.compare_exchange_strong(hOther, hNew))
        return hNew;
    RegCloseKey(hNew); // another thread was first
    return hOther;
}

void CLoggingLevel::GiveUp(HKEY hDeleted)
{
    CLock Lock(g_csLog);
    if (m_hKey.load() != hDeleted)
        return; // another thread has done it
    if (!m_pDeleted)
        m_pDeleted = new std::vector<CRegistryKey>;
    m_pDeleted->emplace_back(hDeleted);
    m_hKey.store(nullptr);
}

std::optional<DWORD> CLoggingLevel::Read()
{
    while (HKEY hKey = GetKey()) {
        DWORD dwValue = 0;
        DWORD dwSize = sizeof dwValue;
        const LSTATUS nStatus =
            RegQueryValueExA(hKey, kValueName, nullptr, nullptr, reinterpret_cast<LPBYTE>(&dwValue), &dwSize);
        if (nStatus != ERROR_KEY_DELETED)
            return nStatus == ERROR_SUCCESS ? dwValue : 0;
        GiveUp(hKey);
    }
    return std::nullopt;
}

void CLoggingLevel::Close()
{
    CLock Lock(g_csLog);
    delete m_pDeleted;
    m_pDeleted = nullptr;
    CRegistryKey(m_hKey.exchange(nullptr));
}
