#include "phnctl/handset/library.h"

#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "system/system.h"

#include <cstring>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace phnctl {

namespace {

template <class Function>
void Find(HMODULE module, const char* name, Function& function)
{
    const auto address = GetProcAddress(module, name);
    if (!address)
        throw Failure(kRefused,
                      fmt::format("the library has no function {}: it is another one, or an older one", name));
    static_assert(sizeof function == sizeof address);
    std::memcpy(&function, &address, sizeof function);
}

std::string FileOf(HMODULE module)
{
    std::string path(32768, '\0'); // the longest that Windows has
    path.resize(GetModuleFileNameA(module, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

bool IsFile(const std::string& path)
{
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

} // namespace

Library::Library(const std::string& path)
{
    Load(path);
    Bind();
}

void Library::Unload()
{
    FreeLibrary(m_module);
}

void Library::Load(const std::string& path)
{
    const std::vector<std::string> candidates =
        path.empty() ? host::LibraryCandidates() : std::vector<std::string>{path};
    for (const std::string& candidate : candidates) {
        m_module = LoadLibraryA(candidate.c_str());
        if (m_module) {
            m_path = FileOf(m_module);
            return;
        }
        if (IsFile(candidate))
            throw Failure(
                kRefused,
                fmt::format("the library {} does not load: {}", candidate, Printable(host::WhyNotLoaded(candidate))),
                "It was built for another system, or something it needs is missing.");
    }
    throw Failure(path.empty() ? kRefused : kUsage,
                  fmt::format("the handset library was not found. Looked for: {}", fmt::join(candidates, ", ")),
                  "Name it with --library PATH.");
}

void Library::Bind()
{
    Find(m_module, "PHN_Startup", Startup);
    Find(m_module, "PHN_Shutdown", Shutdown);
    Find(m_module, "PHN_GetConnectionInfo", GetConnectionInfo);
    Find(m_module, "PHN_GetNetworkInfo", GetNetworkInfo);
    Find(m_module, "PHN_GetBatteryInfo", GetBatteryInfo);
    Find(m_module, "PHN_GetDeviceInfo", GetDeviceInfo);
    Find(m_module, "PHN_Activate", Activate);
    Find(m_module, "PHN_SetRadioPower", SetRadioPower);
    Find(m_module, "PHN_SetLock", SetLock);
    Find(m_module, "PHN_ChangeLockCode", ChangeLockCode);
    Find(m_module, "PHN_GetParameters", GetParameters);
    Find(m_module, "PHN_SetParameters", SetParameters);
    Find(m_module, "PHN_GetFieldSizes", GetFieldSizes);
    Find(m_module, "PHN_GetContact", GetContact);
    Find(m_module, "PHN_SetContact", SetContact);
    Find(m_module, "PHN_DeleteContact", DeleteContact);
    Find(m_module, "PHN_DeleteAllContacts", DeleteAllContacts);
    Find(m_module, "PHN_GetPictureID", GetPictureID);
    Find(m_module, "PHN_GetRingerID", GetRingerID);
    Find(m_module, "PHN_GetGroup", GetGroup);
    Find(m_module, "PHN_GetEvent", GetEvent);
    Find(m_module, "PHN_SetEvent", SetEvent);
    Find(m_module, "PHN_DeleteEvent", DeleteEvent);
    Find(m_module, "PHN_DeleteAllEvents", DeleteAllEvents);
    Find(m_module, "PHN_GetMessageCount", GetMessageCount);
    Find(m_module, "PHN_SendMessage", SendMessage);
    Find(m_module, "PHN_GetFirstMessage", GetFirstMessage);
    Find(m_module, "PHN_GetNextMessage", GetNextMessage);
    Find(m_module, "PHN_SaveMessage", SaveMessage);
    Find(m_module, "PHN_DeleteMessage", DeleteMessage);
    Find(m_module, "PHN_DeleteAllMessages", DeleteAllMessages);
    Find(m_module, "PHN_SetMessageStatus", SetMessageStatus);
    Find(m_module, "PHN_GetCallEntryCount", GetCallEntryCount);
    Find(m_module, "PHN_GetFirstCallEntry", GetFirstCallEntry);
    Find(m_module, "PHN_GetNextCallEntry", GetNextCallEntry);
    Find(m_module, "PHN_ClearCallEntries", ClearCallEntries);
    Find(m_module, "PHN_SetCallback", SetCallback);
}

} // namespace phnctl
