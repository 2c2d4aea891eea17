#include "simulator/web/feed.h"

#include <algorithm>
#include <chrono>

namespace simulator {
namespace {

constexpr std::size_t kMostHappenings = 300;
constexpr std::size_t kMostBytes = 4'000'000;
constexpr std::chrono::seconds kQuiet(15);

} // namespace

void Feed::Add(std::string_view kind, std::string_view json)
{
    const std::scoped_lock lock(mutex_);
    std::string event = "id: " + std::to_string(next_++) + "\nevent: ";
    event.append(kind).append("\ndata: ").append(json).append("\n\n");
    size_ += event.size();
    happenings_.push_back(std::move(event));
    while (happenings_.size() > kMostHappenings || size_ > kMostBytes) {
        size_ -= happenings_.front().size();
        happenings_.pop_front();
    }
    changed_.notify_all();
}

void Feed::Touch()
{
    const std::scoped_lock lock(mutex_);
    ++touches_;
    changed_.notify_all();
}

void Feed::Close()
{
    const std::scoped_lock lock(mutex_);
    isClosed_ = true;
    changed_.notify_all();
}

std::optional<std::string> Feed::Next(Reader& reader)
{
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, kQuiet, [&] { return isClosed_ || reader.next < next_ || reader.touches < touches_; });
    if (isClosed_)
        return std::nullopt;
    if (reader.touches < touches_) {
        reader.touches = touches_;
        lock.unlock();
        Refresh();
        lock.lock();
    }
    return News(reader);
}

// Without the feed's lock, which those who add to it wait for.
void Feed::Refresh()
{
    const std::scoped_lock one(refreshing_);
    std::unique_lock lock(mutex_);
    const std::uint64_t touches = touches_;
    if (refreshed_ == touches)
        return;
    lock.unlock();
    const Parts parts = state_();
    lock.lock();
    refreshed_ = touches;
    ++version_;
    for (const auto& [name, json] : parts)
        if (Part& part = parts_[name]; part.json != json)
            part = {json, version_};
}

std::string Feed::News(Reader& reader) const
{
    std::string news;
    for (const auto& [name, part] : parts_)
        if (part.version > reader.version)
            news.append("event: state\ndata: [\"" + name + "\"," + part.json + "]\n\n");
    reader.version = version_;
    const std::uint64_t first = next_ - happenings_.size();
    for (std::uint64_t number = std::max(reader.next, first); number < next_; ++number)
        news += happenings_[number - first];
    reader.next = next_;
    return news.empty() ? ":\n\n" : news + "event: now\ndata:\n\n";
}

} // namespace simulator
