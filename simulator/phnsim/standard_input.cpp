#include "simulator/phnsim/standard_input.h"

#include "simulator/script/line_splitter.h"

#include <array>
#include <mutex>
#include <string_view>
#include <thread>
#include <utility>

#include <unistd.h>

namespace simulator {

struct StandardInput::Reader
{
    // What is there already. Who goes on writing for ever is read on the thread.
    void ReadAhead()
    {
        constexpr int kMost = 256;
        for (int i = 0; i < kMost && !hasEnded && StandardInputIsReadable(); ++i)
            ReadOnce();
    }

    void ReadOn()
    {
        while (!hasEnded)
            ReadOnce();
    }

    // Not through a stream, which the thread would hold as the program ends.
    void ReadOnce()
    {
        constexpr unsigned kSize = 4096;
        std::array<char, kSize> buffer;
        const auto size = read(STDIN_FILENO, buffer.data(), kSize);
        hasEnded = size <= 0;
        if (hasEnded)
            lines.Finish();
        else
            lines.Add(std::string_view(buffer.data(), static_cast<std::size_t>(size)));
    }

    void Tell(std::string line)
    {
        const std::scoped_lock lock(mutex);
        if (take)
            take(std::move(line));
    }

    LineSplitter lines{[this](std::string line) { Tell(std::move(line)); }};
    bool hasEnded = false;
    std::mutex mutex;
    StandardInput::Take take;
};

StandardInput::StandardInput(Take take) : reader_(std::make_shared<Reader>())
{
    reader_->take = std::move(take);
    reader_->ReadAhead();
    std::thread([reader = reader_] { reader->ReadOn(); }).detach();
}

StandardInput::~StandardInput()
{
    const std::scoped_lock lock(reader_->mutex);
    reader_->take = nullptr;
}

} // namespace simulator
