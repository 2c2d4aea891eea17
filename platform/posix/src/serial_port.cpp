#include "serial_port.h"

#include <sys/epoll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "win32_call.h"

namespace platform {
namespace {

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
    if (operation.event)
        operation.event->Set(lock);
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

DWORD SerialPort::Read(void* buffer, DWORD size, DWORD* done, OVERLAPPED* overlapped)
{
    auto* bytes = static_cast<unsigned char*>(buffer);
    return Run(reads_, std::make_shared<SerialOperation>(SerialOperation{bytes, size, overlapped}), done);
}

DWORD SerialPort::Write(const void* data, DWORD size, DWORD* done, OVERLAPPED* overlapped)
{
    auto* bytes = static_cast<unsigned char*>(const_cast<void*>(data));
    return Run(writes_, std::make_shared<SerialOperation>(SerialOperation{bytes, size, overlapped}), done);
}

DWORD SerialPort::Run(Direction& direction, std::shared_ptr<SerialOperation> operation, DWORD* done)
{
    if (overlapped_ && !operation->record)
        throw Win32Error{ERROR_INVALID_PARAMETER};
    Lock lock = TakeBaseLock();
    CheckOpen();
    Prepare(lock, *operation);
    direction.operations.push_back(operation);
    Advance(lock, direction);
    if (!operation->over && overlapped_)
        return ERROR_IO_PENDING;
    if (!operation->over)
        Block(lock, *operation);
    if (operation->error != ERROR_SUCCESS)
        throw Win32Error{operation->error};
    *done = operation->done;
    return ERROR_SUCCESS;
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
        if (!std::exchange(operation.begun, true))
            operation.timing = direction.reads ? SerialTiming::OfRead(timeouts_, operation.size)
                                               : SerialTiming::OfWrite(timeouts_, operation.size);
        MoveBytes(direction, operation);
        const TimePoint end = operation.timing.End();
        if (operation.error == ERROR_SUCCESS && operation.done < operation.size && Now() < end) {
            operation.error = ErrorOf([&] { AwaitMore(lock, direction, end); });
            if (operation.error == ERROR_SUCCESS)
                return;
        }
        Finish(lock, operation);
        direction.operations.pop_front();
    }
    CancelTimer(lock, std::exchange(direction.timer, 0));
}

// Until the system has no more (the watch reports only what is new after that). A terminal reads as ended, and takes no
// bytes, when it has hung up.
void SerialPort::MoveBytes(const Direction& direction, SerialOperation& operation) const
{
    while (operation.done < operation.size) {
        unsigned char* bytes = operation.buffer + operation.done;
        const std::size_t room = operation.size - operation.done;
        const ssize_t moved =
            direction.reads ? read(descriptor_.Get(), bytes, room) : write(descriptor_.Get(), bytes, room);
        if (moved > 0) {
            operation.done += static_cast<DWORD>(moved);
            operation.timing.OnBytes();
        } else if (moved == 0) {
            operation.error = ERROR_GEN_FAILURE;
            return;
        } else if (errno == EAGAIN) {
            return;
        } else if (errno != EINTR) {
            operation.error = ErrorFromErrno(errno);
            return;
        }
    }
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

// Reports what is new only, so that bytes nobody reads, and a terminal that stays hung up, cost nothing.
void SerialPort::Watch(const Lock& lock)
{
    const std::uint32_t events = EPOLLIN | EPOLLET | (writes_.operations.empty() ? 0u : std::uint32_t{EPOLLOUT});
    if (!watch_)
        watch_ = WatchDescriptor(lock, descriptor_.Get(), events, [this](const Lock& held, std::uint32_t) {
            Advance(held, reads_);
            Advance(held, writes_);
        });
    else if (watched_ != events)
        ChangeWatch(lock, watch_, events);
    watched_ = events;
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
    if ((flags & PURGE_RXCLEAR) && tcflush(descriptor_.Get(), TCIFLUSH))
        ThrowErrno();
    if ((flags & PURGE_TXCLEAR) && tcflush(descriptor_.Get(), TCOFLUSH))
        ThrowErrno();
}

COMSTAT SerialPort::GetStatus() const
{
    int received = 0;
    int unsent = 0;
    const Lock lock = TakeBaseLock();
    CheckOpen();
    if (ioctl(descriptor_.Get(), FIONREAD, &received) || ioctl(descriptor_.Get(), TIOCOUTQ, &unsent))
        ThrowErrno();
    COMSTAT status{};
    status.cbInQue = static_cast<DWORD>(received);
    status.cbOutQue = static_cast<DWORD>(unsent);
    return status;
}

} // namespace platform
