// A simulated handset at the far end of the test run's COM port, at work for as long as the object lives. Used by
// tests on Windows; on Linux simulator::Simulator takes its place. The port cannot be hung up or pulled from here: a
// fault that does so ends the test program with its reason.
#pragma once

#include <thread>

#include "simulator/handset/session.h"
#include "windows/port_peer.h"

class ComHandset
{
public:
    simulator::Handset& Control() { return handset_; }

private:
    void Serve(const std::stop_token& stop);

    const SOCKET peer_ = PortPeer();
    simulator::Handset handset_;
    std::jthread thread_{[this](const std::stop_token& stop) { Serve(stop); }};
};
