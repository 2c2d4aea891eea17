// The registry's "Logging Level", read anew at every line. The key stays open from one reading to the next, so that a
// reading is one call; it is opened again when it was deleted, and looked for at each reading while there is none.
#pragma once

#include <atomic>
#include <optional>
#include <vector>

#include <windows.h>

#include "log/log_file.h"

// Stands at namespace scope, so it has neither constructor nor destructor: Close releases everything.
class CLoggingLevel
{
public:
    // The value as it is now, 0 if it is missing; none without a key. Takes no lock but when a key was deleted.
    std::optional<DWORD> Read();

    // No other thread may be reading.
    void Close();

private:
    HKEY GetKey();
    void GiveUp(HKEY hDeleted);

    std::atomic<HKEY> m_hKey{nullptr};
    std::vector<CRegistryKey>* m_pDeleted PHN_GUARDED_BY(g_csLog) = nullptr; // others may still be reading with them
};
