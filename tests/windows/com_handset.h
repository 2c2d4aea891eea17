// A simulated handset at the far end of the test run's COM port, at work for as long as the object lives. Used by
// tests on Windows; on Linux simulator::Simulator takes its place. The port cannot be hung up or pulled from here: a
// fault that does so ends the test program with its reason.
#pragma once

#include <thread>

#include "simulator/session.h"
#include "windows/port_peer.h"

class ComHandset
{
public:
    ComHandset();
    ~ComHandset();
    ComHandset(const ComHandset&) = delete;
    ComHandset& operator=(const ComHandset&) = delete;

    simulator::Handset& Control() { return handset_; }

private:
    void Serve();
    void Perform(const simulator::Step& step);

    const SOCKET peer_;
    const WSAEVENT stop_;
    const WSAEVENT arrived_;
    simulator::Handset handset_;
    std::thread thread_;
};
