// Lines on their way to one client after the other: whoever says one waits for nobody, one thread writes them. A client
// gets the answers to its own lines only, and what is said without being asked.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace simulated {

class Outbox
{
public:
    // On any thread. To a client that does not read, what finds no room is lost, and it is told so.
    void Add(std::string_view line);

    // For the writer: what to write next, after what it took before has been written. None after the end.
    std::optional<std::string> Next();

    // The client has gone: drops what it has not got, and waits until the writer holds none of it. Nothing is added
    // until Answer() is called for the next one, whose number this is: until then, answers are those to the last one's
    // lines.
    std::uint64_t Forget();
    void Answer(std::uint64_t client);

    // Nothing is added any more. Waits until all is written, or until `limit`.
    void Close(std::chrono::milliseconds limit);

private:
    std::mutex mutex_;
    std::condition_variable added_;
    std::condition_variable written_;
    std::deque<std::string> lines_;
    std::size_t bytes_ = 0;
    bool isWriting_ = false;
    bool isLosing_ = false; // until none waits
    bool isClosed_ = false;
    std::uint64_t client_ = 0;
    std::uint64_t answered_ = 0;
};

} // namespace simulated
