#include "api/calder_app.h"

#include <exception>

#include "api/export_frame.h"
#include "api/plugin_instance.h"
#include "link/device.h"
#include "link/device_owner.h"
#include "link/exec_command.h"
#include "link/port_watch.h"
#include "log/host_check.h"
#include "log/log_file.h"

namespace {

bool MakeEverything() noexcept
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
        CreateInstance();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

bool CCalderApp::InitInstance() noexcept
{
    if (MakeEverything())
        return true;
    CExportFrame::RefuseAll();
    DestroyInstance(); // so that it holds no port either
    return false;
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
