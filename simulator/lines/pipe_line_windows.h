// A named pipe of this machine and this user, served to one client after the other.
#pragma once

#include "simulator/lines/handle_line_windows.h"

namespace simulator {

class PipeLine : public HandleLine
{
public:
    // Throws std::system_error when another process serves this name. What a client does not take within `writeLimit`
    // (milliseconds) is lost, as is what is written to none.
    explicit PipeLine(const std::string& name, unsigned long writeLimit = kForever);

    std::size_t Read(std::span<std::uint8_t> buffer) override;
    bool Write(std::span<const std::uint8_t> bytes) override;

private:
    bool Connect();
    bool HostHasGone() override;

    bool isConnected_ = false;
    bool hasSent_ = false;
};

} // namespace simulator
