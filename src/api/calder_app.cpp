#include "api/calder_app.h"

#include <exception>

#include "api/plugin_instance.h"
#include "link/device.h"
#include "link/device_owner.h"
#include "link/exec_command.h"
#include "link/port_watch.h"
#include "log/host_check.h"
#include "log/log_file.h"

bool CCalderApp::InitInstance() noexcept
{
    CreateLogLock();
    CreateCommandLock();
    g_csDevice.Create();
    CreateCallbackLocks();
    if (!CreateWatchObjects())
        return false;
    try {
        CLogFile::Open();
        CHostCheck::Start();
        return CreateInstance() != nullptr;
    } catch (const std::exception&) {
        return false;
    }
}

void CCalderApp::ExitInstance() noexcept
{
    CHostCheck::BeginUnload();
    DestroyInstance();
    CHostCheck::Stop();
    CloseLog();
    DestroyWatchObjects();
    DestroyCallbackLocks();
    g_csDevice.Destroy();
    DestroyCommandLock();
    DestroyLogLock();
}
