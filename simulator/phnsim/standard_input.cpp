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
    // Not through a stream, which this thread would hold as the program ends.
    void Run()
    {
        constexpr unsigned kSize = 4096;
        LineSplitter lines([this](std::string line) { Tell(std::move(line)); });
        std::array<char, kSize> buffer;
        for (auto size = read(STDIN_FILENO, buffer.data(), kSize); size > 0;
             size = read(STDIN_FILENO, buffer.data(), kSize))
            lines.Add(std::string_view(buffer.data(), static_cast<std::size_t>(size)));
        lines.Finish();
    }

    void Tell(std::string line)
    {
        const std::scoped_lock lock(mutex);
        if (take)
            take(std::move(line));
    }

    std::mutex mutex;
    StandardInput::Take take;
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
