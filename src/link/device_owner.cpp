#include "link/device_owner.h"

#include <atomic>

CCriticalSection g_csCallbackPoll;
CCriticalSection g_csCallbackRemoved;

namespace {

constinit std::atomic<CDeviceOwner*> s_pOwner{nullptr};

} // namespace

void CreateCallbackLocks()
{
    g_csCallbackPoll.Create();
    g_csCallbackRemoved.Create();
}

void DestroyCallbackLocks()
{
    g_csCallbackRemoved.Destroy();
    g_csCallbackPoll.Destroy();
}

CDeviceOwner* GetDeviceOwner()
{
    return s_pOwner.load();
}

void SetDeviceOwner(CDeviceOwner* pOwner)
{
    s_pOwner.store(pOwner);
}
