#include "threads/thread_record.h"

#include <pthread.h>
#include <unistd.h>

#include "threads/mutex.h"
#include "threads/thread_start.h"

namespace platform {
namespace {

// What a thread keeps until its very end. The end comes through a pthread key: after the destructors of the thread's
// own objects, and not when the process ends.
struct Attachment
{
    std::shared_ptr<ThreadRecord> record;
    std::vector<std::function<void()>> atEnd;
};

thread_local Attachment* attachment = nullptr;

void EndThread(void* pointer)
{
    const std::unique_ptr<Attachment> ending(static_cast<Attachment*>(pointer));
    for (auto function = ending->atEnd.rbegin(); function != ending->atEnd.rend(); ++function)
        (*function)();
    ThreadRecord& record = *ending->record;
    const Lock lock = TakeBaseLock();
    for (const auto& mutex : record.owned)
        mutex->Abandon(lock);
    record.owned.clear();
    attachment = nullptr;
    record.SetEnded(lock);
}

pthread_key_t EndKey()
{
    static const pthread_key_t key = [] {
        pthread_key_t created = 0;
        if (const int error = pthread_key_create(&created, EndThread))
            throw std::system_error(error, std::generic_category());
        return created;
    }();
    return key;
}

} // namespace

void AttachThread(std::shared_ptr<ThreadRecord> record)
{
    auto attached = std::make_unique<Attachment>();
    record->id = static_cast<DWORD>(gettid());
    attached->record = std::move(record);
    if (const int error = pthread_setspecific(EndKey(), attached.get()))
        throw std::system_error(error, std::generic_category());
    attachment = attached.release();
}

const std::shared_ptr<ThreadRecord>& CurrentThread()
{
    if (!attachment)
        AttachThread(std::make_shared<ThreadRecord>());
    return attachment->record;
}

void AtThreadEnd(std::function<void()> function)
{
    CurrentThread();
    attachment->atEnd.push_back(std::move(function));
}

} // namespace platform
