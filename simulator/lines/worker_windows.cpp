#include "simulator/lines/worker.h"

#include <windows.h>

#include <atomic>
#include <system_error>
#include <utility>

namespace simulator {

struct Worker::System
{
    static void CALLBACK Run(PTP_CALLBACK_INSTANCE instance, void* context, PTP_WORK)
    {
        auto* system = static_cast<System*>(context);
        CallbackMayRunLong(instance);
        system->runner = GetCurrentThreadId();
        system->work();
        system->runner = 0;
    }

    std::function<void()> work;
    std::atomic<DWORD> runner = 0;
    PTP_WORK item = nullptr;
};

Worker::Worker(std::function<void()> work) : system_(std::make_unique<System>())
{
    system_->work = std::move(work);
    system_->item = CreateThreadpoolWork(System::Run, system_.get(), nullptr);
    if (!system_->item)
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "CreateThreadpoolWork");
    SubmitThreadpoolWork(system_->item);
}

Worker::~Worker()
{
    Join();
    CloseThreadpoolWork(system_->item);
}

void Worker::Join()
{
    WaitForThreadpoolWorkCallbacks(system_->item, TRUE);
}

bool Worker::IsCurrent() const
{
    return system_->runner == GetCurrentThreadId();
}

} // namespace simulator
