// The surroundings of a fuzz target: a log that writes nothing, and a port on which every reply is what the fuzzer made
// up. One object per process, made at the first input.
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <span>

#include "link/device_owner.h"

namespace fuzz {

class World final : public CDeviceOwner
{
public:
    static World& Get();

    // What services are given as hDevice.
    HANDLE Device() const { return port_->GetHandle(); }

    // The replies, from here on: an exchange takes two bytes of length and as many bytes; the last takes what is left.
    void SetReplies(std::span<const uint8_t> replies) { replies_ = replies; }
    bool HasReplies() const { return !replies_.empty(); }
    std::span<const uint8_t> TakeReply();

private:
    World();
    std::shared_ptr<COpenPort> GetCurrentPort() override { return port_; }
    void NotifyDeviceState(bool) override {}
    void DestroyObjects() override {}
    void PollCallbacks(HWND, HANDLE) override {}

    std::shared_ptr<COpenPort> port_;
    std::span<const uint8_t> replies_;
};

} // namespace fuzz
