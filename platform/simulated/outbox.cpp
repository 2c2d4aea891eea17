#include "outbox.h"

#include <utility>

namespace simulated {

void Outbox::Add(std::string_view line)
{
    constexpr std::size_t kRoom = 1024 * 1024;
    const std::scoped_lock lock(mutex_);
    if (isClosed_ || isLosing_ || answered_ != client_)
        return;
    isLosing_ = bytes_ + line.size() > kRoom;
    lines_.emplace_back(isLosing_ ? "error: what was said next is lost, as nobody has read what was said before"
                                  : line);
    lines_.back() += '\n';
    bytes_ += lines_.back().size();
    added_.notify_one();
}

std::optional<std::string> Outbox::Next()
{
    std::unique_lock lock(mutex_);
    isWriting_ = false;
    written_.notify_all();
    added_.wait(lock, [this] { return isClosed_ || !lines_.empty(); });
    if (lines_.empty())
        return std::nullopt;
    isWriting_ = true;
    std::string line = std::move(lines_.front());
    lines_.pop_front();
    bytes_ -= line.size();
    isLosing_ = isLosing_ && !lines_.empty();
    return line;
}

std::uint64_t Outbox::Forget()
{
    std::unique_lock lock(mutex_);
    lines_.clear();
    bytes_ = 0;
    isLosing_ = false;
    written_.wait(lock, [this] { return !isWriting_; });
    return ++client_;
}

void Outbox::Answer(std::uint64_t client)
{
    const std::scoped_lock lock(mutex_);
    answered_ = client;
}

void Outbox::Close(std::chrono::milliseconds limit)
{
    std::unique_lock lock(mutex_);
    isClosed_ = true;
    added_.notify_one();
    written_.wait_for(lock, limit, [this] { return lines_.empty() && !isWriting_; });
}

} // namespace simulated
