// A named pipe of this machine and this user, served to one client after the other.
#pragma once

#include "simulator/lines/handle_line_windows.h"

namespace simulator {

class PipeLine : public HandleLine
{
public:
    // Throws std::system_error when another process serves this name. What is written to no client is lost.
    explicit PipeLine(const std::string& name);

    std::size_t Read(std::span<std::uint8_t> buffer) override;
    bool Write(std::span<const std::uint8_t> bytes) override;

protected:
    // On the reading thread, when nothing can reach the last client any more, nor yet the next one.
    virtual void ClientHasGone();

private:
    bool Connect();
    bool HostHasGone() override;

    bool isConnected_ = false;
    bool hasSent_ = false;
};

} // namespace simulator
