// Makes lines of bytes as they come.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace simulator {

class LineSplitter
{
public:
    // `take` is given each line, without its end.
    explicit LineSplitter(std::function<void(std::string)> take) : take_(std::move(take)) {}

    void Add(std::string_view bytes)
    {
        pending_ += bytes;
        std::size_t begin = 0;
        for (std::size_t end = 0; (end = pending_.find('\n', begin)) != std::string::npos; begin = end + 1)
            take_(pending_.substr(begin, end - begin));
        pending_.erase(0, begin);
    }

    // The last line has no end.
    void Finish()
    {
        if (!pending_.empty())
            take_(std::exchange(pending_, {}));
    }

private:
    const std::function<void(std::string)> take_;
    std::string pending_;
};

} // namespace simulator
