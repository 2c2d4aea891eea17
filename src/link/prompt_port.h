// A diagnostic port whose reads end with the reply frame's last byte, for hosts that ask for it (the registry's "Prompt
// Reads" when the port is opened). Everything else is as in DP: a read that the frame does not end is ended by silence,
// so that three silences, the time-out before the first byte, the sizes and the log lines stay. A read takes no byte
// behind the frame; what has come since is dropped when the next request is written, or one late reply would make all
// others late.
#pragma once

#include "link/diagnostic_port.h"

class CPromptPort final : public DP
{
public:
    using DP::DP;

    // Without any for reading but that of silence, which ends a read that the frame does not fill: waits end the rest.
    static constexpr COMMTIMEOUTS kTimeouts{10, 0, 0, 2, 10};

    static bool IsWanted();

private:
    void DropLeftovers(HANDLE hPort) const override;
    bool Gather(SReply& Reply) override;
    bool TakeRest(SReply& Reply, ULONGLONG ullStart);
    bool TakePiece(SReply& Reply, DWORD dwMost, DWORD dwWaiting, DWORD dwTimeout, bool* pbSilent);
};
