// The event object: what CreateEventA makes, and what an overlapped operation signals when it is over.
#pragma once

#include "threads/waitable.h"

namespace platform {

class Event : public Waitable
{
public:
    Event(bool manualReset, bool signalled) : manualReset_(manualReset), signalled_(signalled) {}

    bool IsSignalled(const Lock&) const override { return signalled_; }
    bool Acquire(const Lock&) override
    {
        signalled_ = signalled_ && manualReset_;
        return false;
    }

    void Set(const Lock& lock)
    {
        signalled_ = true;
        Wake(lock);
    }
    void Reset(const Lock&) { signalled_ = false; }

    // Whose operation the event is to tell the end of; null once it is over.
    void SetCarrier(const Lock&, std::shared_ptr<Carrier> carrier) { carrier_ = std::move(carrier); }
    std::shared_ptr<Carrier> CarriedBy(const Lock&) const override { return carrier_; }

private:
    const bool manualReset_;
    bool signalled_;
    std::shared_ptr<Carrier> carrier_;
};

} // namespace platform
