// One opened line to a host: bytes in, bytes out, and an end that another thread can bring about at any time.
// A Simulator opens a line, serves it until it ends and opens the next; what is published for it goes with the object.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>

namespace simulator {

class Line
{
public:
    virtual ~Line() = default;

    // Waits for bytes; 0 when the line has ended.
    virtual std::size_t Read(std::span<std::uint8_t> buffer) = 0;
    // Both false when the line has ended.
    virtual bool Write(std::span<const std::uint8_t> bytes) = 0;
    virtual bool Pause(std::chrono::milliseconds time) = 0;
    // Calls `told`, on the thread that reads or writes, each time that a host which has sent something closes the port.
    void WhenHostCloses(std::function<void()> told) { hostClosed_ = std::move(told); }
    // Ends the line: what waits in it returns at once, and so does everything later.
    virtual void Interrupt() = 0;

protected:
    std::function<void()> hostClosed_ = [] {};
};

// Opens the next line; throws std::system_error when it cannot be offered.
using LineOpener = std::function<std::unique_ptr<Line>()>;

// On Linux: a pseudo terminal, linked into the device directory as `name` for as long as the line lives.
LineOpener PtyLines(std::filesystem::path devices, std::string name);
// One connection at a time to `port` on 127.0.0.1. Throws std::system_error when the port is taken.
// A peer that goes while it is written to raises SIGPIPE, which the program has to ignore.
LineOpener TcpLines(std::uint16_t port);
// On Windows: a serial port, usually one end of a virtual pair. It tells nothing of a host's closing the other end.
LineOpener ComLines(std::string name);
// On Linux: the terminal of a handset, which is the other side here: 115200 bits a second, raw. Ends when the handset
// goes.
LineOpener DeviceLines(std::filesystem::path device);

} // namespace simulator
