// Makes lines of bytes as they come.
#pragma once

#include "simulator/script/control.h"

#include <algorithm>
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
        for (std::size_t end = 0; (end = bytes.find('\n')) != std::string_view::npos; bytes.remove_prefix(end + 1)) {
            Keep(bytes.substr(0, end));
            take_(std::exchange(pending_, {}));
        }
        Keep(bytes);
    }

    // The last line has no end.
    void Finish()
    {
        if (!pending_.empty())
            take_(std::exchange(pending_, {}));
    }

private:
    // Of a line that is too long, as much as shows that it is.
    void Keep(std::string_view bytes)
    {
        pending_ += bytes.substr(0, std::min(bytes.size(), kLongestControlLine + 1 - pending_.size()));
    }

    const std::function<void(std::string)> take_;
    std::string pending_;
};

} // namespace simulator
