// What the panel's pages are told, as server-sent events: the state in parts ("state", [NAME, PART]), of which a page
// gets those that it does not have as they are now; the latest happenings in their order; and "now" behind what is new.
// Nothing is queued for a page: one that is slow finds that happenings are missing, and the newest state.
// Any thread may use it.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace simulator {

class Feed
{
public:
    using Parts = std::map<std::string, std::string>; // JSON without line ends, by name

    // `state` is asked only while somebody reads, on the reader's thread.
    explicit Feed(std::function<Parts()> state) : state_(std::move(state)) {}

    // A happening, numbered from 1; `json` has no line ends.
    void Add(std::string_view kind, std::string_view json);
    // The state may be another now.
    void Touch();
    // Ends all reading, for good.
    void Close();

    // What one page has been told.
    struct Reader
    {
        std::uint64_t next = 1;
        std::uint64_t touches = 0;
        std::uint64_t version = 0;
    };

    // Waits for what is new to the reader, and gives it as events; a remark after a while in which there was nothing,
    // by which one notices readers that have gone. None once the feed is closed.
    std::optional<std::string> Next(Reader& reader);

private:
    struct Part
    {
        std::string json;
        std::uint64_t version;
    };

    void Refresh();
    std::string News(Reader& reader) const;

    const std::function<Parts()> state_;
    std::mutex refreshing_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isClosed_ = false;
    std::deque<std::string> happenings_; // the latest ones, as events
    std::size_t size_ = 0;               // of them all
    std::uint64_t next_ = 1;
    std::uint64_t touches_ = 1;
    std::uint64_t refreshed_ = 0; // the touches that parts_ knows
    std::uint64_t version_ = 0;
    std::map<std::string, Part> parts_;
};

} // namespace simulator
