// Bytes that a serial port has received and that nobody has asked for yet: a reader who takes a reply piece by piece
// costs one system call and not one a piece.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace platform {

class ReceiveQueue
{
public:
    std::size_t Size() const { return end_ - begin_; }
    void Clear() { begin_ = end_ = 0; }

    // Takes at most so many; returns how many.
    std::size_t Take(unsigned char* bytes, std::size_t room)
    {
        const std::size_t count = std::min(room, Size());
        std::copy_n(bytes_.data() + begin_, count, bytes);
        begin_ += count;
        return count;
    }

    // Whether the terminal was just found to have no more than this. Asked again, it has to be looked at.
    bool TakeIsAll() { return Size() > 0 && std::exchange(isAll_, false); }

    // read(2) from the terminal, while nothing is left here.
    ssize_t Read(int descriptor, unsigned char* bytes, std::size_t room)
    {
        if (room >= bytes_.size())
            return read(descriptor, bytes, room);
        const ssize_t received = read(descriptor, bytes_.data(), bytes_.size());
        if (received <= 0)
            return received;
        begin_ = 0;
        end_ = static_cast<std::size_t>(received);
        isAll_ = end_ < bytes_.size();
        return static_cast<ssize_t>(Take(bytes, room));
    }

private:
    std::array<unsigned char, 4096> bytes_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    bool isAll_ = false;
};

} // namespace platform
