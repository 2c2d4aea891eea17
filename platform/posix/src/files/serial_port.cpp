#include "files/serial_port.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "base/win32_call.h"

namespace platform {
namespace {

// Having the service thread look for bytes, and no longer, costs two system calls, which an exchange can do without.
constexpr std::chrono::milliseconds kUntilWatched{2};

// What those are blocked for who wait until the operation is over.
Source SourceOf(const SerialOperation& operation)
{
    return operation.record ? static_cast<Source>(operation.record) : &operation;
}

void Finish(const Lock& lock, SerialOperation& operation)
{
    operation.over = true;
    if (operation.record) {
        operation.record->InternalHigh = operation.done;
        operation.record->Internal = operation.error;
    }
    if (operation.event) {
        operation.event->SetCarrier(lock, nullptr);
        operation.event->Set(lock);
        operation.event = nullptr;
    }
    WakeWaiters(lock, SourceOf(operation));
}

// A record says that its operation is pending from the call until it is over.
void Prepare(const Lock& lock, SerialOperation& operation)
{
    if (!operation.record)
        return;
    if (operation.record->hEvent)
        operation.event = FromHandle<Event>(operation.record->hEvent);
    if (operation.event)
        operation.event->Reset(lock);
    operation.record->Internal = STATUS_PENDING;
    operation.record->InternalHigh = 0;
}

} // namespace

SerialPort::SerialPort(UniqueDescriptor descriptor, bool overlapped)
    : overlapped_(overlapped),
      descriptor_(std::move(descriptor)),
      bell_(overlapped ? eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK) : -1)
{
}

DWORD SerialPort::Read(void* buffer, DWORD size, DWORD* done, OVERLAPPED* overlapped)
{
    auto* bytes = static_cast<unsigned char*>(buffer);
    return Run(reads_, {bytes, size, overlapped}, done);
}

DWORD SerialPort::Write(const void* data, DWORD size, DWORD* done, OVERLAPPED* overlapped)
{
    auto* bytes = static_cast<unsigned char*>(const_cast<void*>(data));
    return Run(writes_, {bytes, size, overlapped}, done);
}

DWORD SerialPort::Run(Direction& direction, SerialOperation&& stated, DWORD* done)
{
    if (overlapped_ && !stated.record)
        throw Win32Error{ERROR_INVALID_PARAMETER};
    Lock lock = TakeBaseLock();
    CheckOpen();
    const auto operation = Keep(lock, direction, std::move(stated));
    Prepare(lock, *operation);
    direction.operations.push_back(operation);
    Advance(lock, direction);
    if (!operation->over && overlapped_) {
        if (operation->event)
            operation->event->SetCarrier(lock, shared_from_this());
        return ERROR_IO_PENDING;
    }
    if (!operation->over)
        Block(lock, *operation);
    if (operation->error != ERROR_SUCCESS)
        throw Win32Error{operation->error};
    *done = operation->done;
    return ERROR_SUCCESS;
}

// In the memory of the latest one, if nobody has that any more.
std::shared_ptr<SerialOperation> SerialPort::Keep(const Lock&, Direction& direction, SerialOperation&& stated)
{
    if (direction.latest.use_count() == 1)
        *direction.latest = std::move(stated);
    else
        direction.latest = std::make_shared<SerialOperation>(std::move(stated));
    return direction.latest;
}

void SerialPort::Block(Lock& lock, const SerialOperation& operation)
{
    operation.thread->blockedIn = this;
    BlockUntil(lock, SourceOf(operation), [&] { return operation.over; });
    operation.thread->blockedIn = nullptr;
}

// Carries the direction's operations on as far as they go now; the one that remains first waits for bytes or for time.
void SerialPort::Advance(const Lock& lock, Direction& direction)
{
    while (!direction.operations.empty()) {
        SerialOperation& operation = *direction.operations.front();
        const bool hasMoved = MoveBytes(direction, operation);
        const bool wantsMore = operation.error == ERROR_SUCCESS && operation.done < operation.size;
        const TimePoint end = wantsMore ? EndOf(direction, operation, hasMoved) : TimePoint();
        if (wantsMore && (end == kNever || Now() < end)) {
            operation.error = ErrorOf([&] { AwaitMore(lock, direction, end); });
            if (operation.error == ERROR_SUCCESS)
                return;
        }
        Finish(lock, operation);
        direction.operations.erase(direction.operations.begin());
    }
    CancelTimer(lock, std::exchange(direction.timer, 0));
}

// An operation that is over at once needs no clock.
TimePoint SerialPort::EndOf(const Direction& direction, SerialOperation& operation, bool hasMoved) const
{
    if (!std::exchange(operation.isTimed, true))
        operation.timing = direction.reads ? SerialTiming::OfRead(timeouts_, operation.size)
                                           : SerialTiming::OfWrite(timeouts_, operation.size);
    if (hasMoved)
        operation.timing.OnBytes();
    return operation.timing.End();
}

// Until the system has no more (the watch reports only what is new after that); whether any were moved. A terminal
// reads as ended, and takes no bytes, when it has hung up.
bool SerialPort::MoveBytes(const Direction& direction, SerialOperation& operation)
{
    const DWORD before = operation.done;
    if (direction.reads && std::exchange(wasFoundEmpty_, false))
        return false;
    if (direction.reads)
        operation.done += static_cast<DWORD>(received_.Take(operation.buffer + before, operation.size - before));
    while (operation.done < operation.size) {
        unsigned char* bytes = operation.buffer + operation.done;
        const std::size_t room = operation.size - operation.done;
        const ssize_t moved =
            direction.reads ? received_.Read(descriptor_.Get(), bytes, room) : write(descriptor_.Get(), bytes, room);
        if (moved > 0) {
            operation.done += static_cast<DWORD>(moved);
        } else if (moved == 0) {
            operation.error = ERROR_GEN_FAILURE;
            break;
        } else if (errno == EAGAIN) {
            break;
        } else if (errno != EINTR) {
            operation.error = ErrorFromErrno(errno);
            break;
        }
    }
    return operation.done > before;
}

// A timer that is due earlier stays: the operation is looked at then, and again at its end.
void SerialPort::AwaitMore(const Lock& lock, Direction& direction, TimePoint end)
{
    Watch(lock);
    if (end == kNever || (direction.timer && direction.timerDue <= end))
        return;
    CancelTimer(lock, std::exchange(direction.timer, 0));
    direction.timerDue = end;
    direction.timer = StartTimer(lock, end, [this, &direction](const Lock& held) {
        direction.timer = 0;
        Advance(held, direction);
    });
}

// Input that nobody reads, told again and again, would keep a thread that looks for it from waiting.
std::uint32_t SerialPort::EventsAwaited() const
{
    return (reads_.operations.empty() ? 0u : std::uint32_t{EPOLLIN}) |
           (writes_.operations.empty() ? 0u : std::uint32_t{EPOLLOUT});
}

// The thread that carries on learns what it has to look for now. Where there is none, one usually comes at once.
void SerialPort::Watch(const Lock& lock)
{
    if (isCarriedOn_)
        Ring(bell_.Get());
    else if (!overlapped_ || isUnattended_)
        SetWatch(lock, EventsAwaited());
    else if (!attendance_)
        attendance_ = StartTimer(lock, Now() + kUntilWatched, [this](const Lock& held) { LookAfter(held); });
}

// The service thread looks for bytes itself where nobody waits for them.
void SerialPort::LookAfter(const Lock& lock)
{
    attendance_ = 0;
    if (isCarriedOn_)
        return;
    isUnattended_ = true;
    Advance(lock, reads_);
    Advance(lock, writes_);
    isUnattended_ = false;
}

// Reports what is new only, so that bytes nobody reads, and a terminal that stays hung up, cost nothing.
void SerialPort::SetWatch(const Lock& lock, std::uint32_t awaited)
{
    const std::uint32_t events = awaited | EPOLLET;
    if (!watch_)
        watch_ = WatchDescriptor(lock, descriptor_.Get(), events, [this](const Lock& held, std::uint32_t) {
            Advance(held, reads_);
            Advance(held, writes_);
        });
    else if (watched_ != events)
        ChangeWatch(lock, watch_, events);
    watched_ = events;
}

bool SerialPort::CarryOn(Lock& lock, std::span<const Source> sources, TimePoint deadline)
{
    if (isCarriedOn_ || !descriptor_ || !bell_)
        return false;
    SetWatch(lock, 0);
    isCarriedOn_ = true;
    for (const Direction* direction : {&reads_, &writes_})
        deadline = direction->timer ? std::min(deadline, direction->timerDue) : deadline;
    WaitForWakeOr(lock, sources, deadline, {descriptor_.Get(), static_cast<short>(EventsAwaited()), 0}, bell_.Get());
    isCarriedOn_ = false;
    Advance(lock, reads_);
    Advance(lock, writes_);
    return true;
}

bool SerialPort::Cancel(const Lock& lock, const std::function<bool(const SerialOperation&)>& isMeant)
{
    const bool read = CancelIn(lock, reads_, isMeant);
    const bool written = CancelIn(lock, writes_, isMeant);
    return read || written;
}

bool SerialPort::CancelIn(const Lock& lock, Direction& direction,
                          const std::function<bool(const SerialOperation&)>& isMeant)
{
    const auto cancelled = std::erase_if(direction.operations, [&](const auto& operation) {
        if (!isMeant(*operation))
            return false;
        operation->error = ERROR_OPERATION_ABORTED;
        Finish(lock, *operation);
        return true;
    });
    if (cancelled > 0)
        Advance(lock, direction);
    return cancelled > 0;
}

void SerialPort::OnLastHandleClosed()
{
    UniqueDescriptor closing; // closed after the lock is left: the system may wait for output there
    const Lock lock = TakeBaseLock();
    Cancel(lock, [](const SerialOperation&) { return true; });
    CancelTimer(lock, std::exchange(attendance_, 0));
    EndWatch(lock, std::exchange(watch_, 0));
    closing = std::move(descriptor_);
}

void SerialPort::CheckOpen() const
{
    if (!descriptor_)
        throw Win32Error{ERROR_INVALID_HANDLE};
}

void SerialPort::SetTimeouts(const COMMTIMEOUTS& timeouts)
{
    const Lock lock = TakeBaseLock();
    CheckOpen();
    timeouts_ = timeouts;
}

void SerialPort::Purge(DWORD flags)
{
    const auto every = [](const SerialOperation&) { return true; };
    const Lock lock = TakeBaseLock();
    CheckOpen();
    if (flags & PURGE_RXABORT)
        CancelIn(lock, reads_, every);
    if (flags & PURGE_TXABORT)
        CancelIn(lock, writes_, every);
    if (flags & PURGE_RXCLEAR) {
        received_.Clear();
        if (tcflush(descriptor_.Get(), TCIFLUSH))
            ThrowErrno();
    }
    if ((flags & PURGE_TXCLEAR) && tcflush(descriptor_.Get(), TCOFLUSH))
        ThrowErrno();
}

COMSTAT SerialPort::GetStatus()
{
    int received = 0;
    const Lock lock = TakeBaseLock();
    CheckOpen();
    if (!received_.TakeIsAll() && ioctl(descriptor_.Get(), FIONREAD, &received))
        ThrowErrno();
    COMSTAT status{};
    status.cbInQue = static_cast<DWORD>(received_.Size()) + static_cast<DWORD>(received);
    wasFoundEmpty_ = overlapped_ && status.cbInQue == 0;
    for (const auto& operation : writes_.operations)
        status.cbOutQue += operation->size - operation->done;
    return status;
}

} // namespace platform
