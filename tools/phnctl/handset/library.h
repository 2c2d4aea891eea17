// The handset library, loaded at run time: phnctl links nothing of it and knows only its public header. Load and unload
// it on the thread that dispatches window messages, while no call is in progress. An unload waits a second for the
// library's threads, and the end of the process waits for nothing, so only who goes on without the library unloads it.
#pragma once

#include "phnnrv.h"

#include <string>
#include <windows.h>

namespace phnctl {

class Library
{
public:
    // An empty path means the usual places. Throws Failure that says where was looked and what went wrong.
    explicit Library(const std::string& path);
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    // Nothing can be called afterwards.
    void Unload();

    const std::string& Path() const { return m_path; }

    decltype(&PHN_Startup) Startup;
    decltype(&PHN_Shutdown) Shutdown;
    decltype(&PHN_GetConnectionInfo) GetConnectionInfo;
    decltype(&PHN_GetNetworkInfo) GetNetworkInfo;
    decltype(&PHN_GetBatteryInfo) GetBatteryInfo;
    decltype(&PHN_GetDeviceInfo) GetDeviceInfo;
    decltype(&PHN_Activate) Activate;
    decltype(&PHN_SetRadioPower) SetRadioPower;
    decltype(&PHN_SetLock) SetLock;
    decltype(&PHN_ChangeLockCode) ChangeLockCode;
    decltype(&PHN_GetParameters) GetParameters;
    decltype(&PHN_SetParameters) SetParameters;
    decltype(&PHN_GetFieldSizes) GetFieldSizes;
    decltype(&PHN_GetContact) GetContact;
    decltype(&PHN_SetContact) SetContact;
    decltype(&PHN_DeleteContact) DeleteContact;
    decltype(&PHN_DeleteAllContacts) DeleteAllContacts;
    decltype(&PHN_GetPictureID) GetPictureID;
    decltype(&PHN_GetRingerID) GetRingerID;
    decltype(&PHN_GetGroup) GetGroup;
    decltype(&PHN_GetEvent) GetEvent;
    decltype(&PHN_SetEvent) SetEvent;
    decltype(&PHN_DeleteEvent) DeleteEvent;
    decltype(&PHN_DeleteAllEvents) DeleteAllEvents;
    decltype(&PHN_GetMessageCount) GetMessageCount;
    decltype(&PHN_SendMessage) SendMessage;
    decltype(&PHN_GetFirstMessage) GetFirstMessage;
    decltype(&PHN_GetNextMessage) GetNextMessage;
    decltype(&PHN_SaveMessage) SaveMessage;
    decltype(&PHN_DeleteMessage) DeleteMessage;
    decltype(&PHN_DeleteAllMessages) DeleteAllMessages;
    decltype(&PHN_SetMessageStatus) SetMessageStatus;
    decltype(&PHN_GetCallEntryCount) GetCallEntryCount;
    decltype(&PHN_GetFirstCallEntry) GetFirstCallEntry;
    decltype(&PHN_GetNextCallEntry) GetNextCallEntry;
    decltype(&PHN_ClearCallEntries) ClearCallEntries;
    decltype(&PHN_SetCallback) SetCallback;

private:
    void Load(const std::string& path);
    void Bind();

    HMODULE m_module = nullptr;
    std::string m_path;
};

} // namespace phnctl
