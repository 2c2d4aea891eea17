#include "simulator/phnsim/standard_input.h"

#include <array>
#include <mutex>
#include <string_view>
#include <thread>
#include <utility>

#include <unistd.h>

namespace simulator {

struct StandardInput::Reader
{
    // Not through a stream, which this thread would hold as the program ends.
    void Run()
    {
        constexpr unsigned kSize = 4096;
        std::array<char, kSize> buffer;
        for (auto size = read(STDIN_FILENO, buffer.data(), kSize); size > 0;
             size = read(STDIN_FILENO, buffer.data(), kSize))
            Split(std::string_view(buffer.data(), static_cast<std::size_t>(size)));
        if (!pending.empty())
            Tell(std::move(pending));
    }

    void Split(std::string_view bytes)
    {
        pending += bytes;
        std::size_t begin = 0;
        for (std::size_t end = 0; (end = pending.find('\n', begin)) != std::string::npos; begin = end + 1)
            Tell(pending.substr(begin, end - begin));
        pending.erase(0, begin);
    }

    void Tell(std::string line)
    {
        const std::scoped_lock lock(mutex);
        if (take)
            take(std::move(line));
    }

    std::mutex mutex;
    StandardInput::Take take;
    std::string pending; // the beginning of a line
};

StandardInput::StandardInput(Take take) : reader_(std::make_shared<Reader>())
{
    reader_->take = std::move(take);
    std::thread([reader = reader_] { reader->Run(); }).detach();
}

StandardInput::~StandardInput()
{
    const std::scoped_lock lock(reader_->mutex);
    reader_->take = nullptr;
}

} // namespace simulator
