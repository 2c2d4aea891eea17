// The panel: a page in the browser that shows the simulated handset, what travels over its line, and lets a person do
// what control lines do. It is served on 127.0.0.1 to those who know the address. The HTTP library stays behind this
// header.
#pragma once

#include "simulator/script/control.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace simulator {

class Panel
{
public:
    // Serves at `port`, or where one is free when that is 0, what pages post going to control.Post(). Throws
    // std::runtime_error when the port is taken, or this phnsim was built without the HTTP library.
    Panel(Control& control, std::uint16_t port);
    ~Panel(); // waits for no page
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    // What a person opens, token included.
    std::string Address() const;

    // Both from any thread, and both wait for no page.
    void Show(const Exchange& exchange);
    void Say(std::string_view line); // the answer to a control line, wherever that came from

private:
    class Server;
    std::unique_ptr<Server> server_;
};

} // namespace simulator
