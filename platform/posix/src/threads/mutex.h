// The mutex object: owned by a thread, which may take it again, and abandoned when its owner ends without releasing it.
#pragma once

#include "threads/thread_record.h"

namespace platform {

class Mutex : public Waitable, public std::enable_shared_from_this<Mutex>
{
public:
    bool IsSignalled(const Lock&) const override { return !owner_ || owner_ == CurrentThread().get(); }
    bool Acquire(const Lock&) override;

    // One release of the calling thread; throws ERROR_NOT_OWNER.
    void Release(const Lock& lock);

    // The owner has ended.
    void Abandon(const Lock& lock);

private:
    const ThreadRecord* owner_ = nullptr;
    unsigned taken_ = 0;
    bool abandoned_ = false;
};

} // namespace platform
