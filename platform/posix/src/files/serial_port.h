// A serial port: a terminal in raw mode, with a queue of operations for each direction. An operation begins on the
// caller's thread and, if it is not over at once, is carried on by the thread that waits for its event while that is
// blocked, or else, a little later, by the service thread; buffers and OVERLAPPED records are touched under the base
// lock only, and never again once the operation is over (completed, timed out, cancelled, purged, or its port closed).
// A terminal that has hung up fails everything with ERROR_GEN_FAILURE.
#pragma once

#include <functional>
#include <vector>

#include "base/unique_descriptor.h"
#include "files/file.h"
#include "files/receive_queue.h"
#include "files/serial_timing.h"
#include "threads/event.h"
#include "threads/service_thread.h"
#include "threads/thread_record.h"

namespace platform {

// One ReadFile or WriteFile.
struct SerialOperation
{
    unsigned char* buffer; // a write only reads it
    DWORD size;
    OVERLAPPED* record;                                     // null: none
    std::shared_ptr<Event> event = {};                      // of the record; null: none, or it is over
    std::shared_ptr<ThreadRecord> thread = CurrentThread(); // whose operation it is
    bool isTimed = false;
    SerialTiming timing = {};
    DWORD done = 0;
    bool over = false;
    DWORD error = ERROR_SUCCESS;
};

class SerialPort : public File, public Carrier, public std::enable_shared_from_this<SerialPort>
{
public:
    SerialPort(UniqueDescriptor descriptor, bool overlapped);

    DWORD Read(void* buffer, DWORD size, DWORD* done, OVERLAPPED* overlapped) override;
    DWORD Write(const void* data, DWORD size, DWORD* done, OVERLAPPED* overlapped) override;
    void OnLastHandleClosed() override;
    bool CarryOn(Lock& lock, std::span<const Source> sources, TimePoint deadline) override;

    // Ends the pending operations that are meant, with ERROR_OPERATION_ABORTED. False if there are none.
    bool Cancel(const Lock& lock, const std::function<bool(const SerialOperation&)>& isMeant);

    // The rest throws ERROR_INVALID_HANDLE once the port is closed.
    void SetTimeouts(const COMMTIMEOUTS& timeouts);
    void Purge(DWORD flags);
    COMSTAT GetStatus();

private:
    // The operations of one direction; only the first one moves bytes.
    struct Direction
    {
        bool reads;
        std::vector<std::shared_ptr<SerialOperation>> operations = {};
        std::shared_ptr<SerialOperation> latest = {};
        TimerId timer = 0;
        TimePoint timerDue = kNever;
    };

    void CheckOpen() const;
    DWORD Run(Direction& direction, SerialOperation&& stated, DWORD* done);
    std::shared_ptr<SerialOperation> Keep(const Lock& lock, Direction& direction, SerialOperation&& stated);
    void Block(Lock& lock, const SerialOperation& operation);
    bool CancelIn(const Lock& lock, Direction& direction, const std::function<bool(const SerialOperation&)>& isMeant);
    void Advance(const Lock& lock, Direction& direction);
    bool MoveBytes(const Direction& direction, SerialOperation& operation);
    TimePoint EndOf(const Direction& direction, SerialOperation& operation, bool hasMoved) const;
    void AwaitMore(const Lock& lock, Direction& direction, TimePoint end);
    std::uint32_t EventsAwaited() const;
    void Watch(const Lock& lock);
    void LookAfter(const Lock& lock);
    void SetWatch(const Lock& lock, std::uint32_t events);

    const bool overlapped_;
    // Under the base lock:
    UniqueDescriptor descriptor_; // none once the port is closed
    COMMTIMEOUTS timeouts_{};
    ReceiveQueue received_;
    bool wasFoundEmpty_ = false; // by GetStatus: an overlapped read that follows need not try at once
    Direction reads_{true};
    Direction writes_{false};
    WatchId watch_ = 0;
    std::uint32_t watched_ = 0;
    const UniqueDescriptor bell_; // of the thread that carries on
    bool isCarriedOn_ = false;
    TimerId attendance_ = 0; // at its end the service thread looks for bytes
    bool isUnattended_ = false;
};

} // namespace platform
