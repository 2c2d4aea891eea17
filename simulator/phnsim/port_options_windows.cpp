#include "simulator/phnsim/port_options.h"

#include <CLI/CLI.hpp>

#include <cstdint>

namespace simulator {

struct PortOptions::Values
{
    std::string port{};
    std::uint16_t tcp = 0;
};

PortOptions::PortOptions(CLI::App& app) : values_(std::make_unique<Values>())
{
    auto* way = app.add_option_group("port", "how it is reached (one of these)");
    way->add_option("--port", values_->port, "a serial port, one end of a virtual pair, such as COM6")
        ->type_name("NAME");
    way->add_option("--tcp", values_->tcp, "a TCP port on 127.0.0.1")
        ->type_name("PORT")
        ->check(CLI::Range(1, 65535).description(""));
    way->require_option(1);
}

PortOptions::~PortOptions() = default;

PortChoice PortOptions::Choice(PortKind) const
{
    if (values_->port.empty())
        return {.open = [tcp = values_->tcp] { return TcpLines(tcp); },
                .openHandset = ComLines,
                .shown = "127.0.0.1:" + std::to_string(values_->tcp)};
    return {.open = [port = values_->port] { return ComLines(port); },
            .openHandset = ComLines,
            .shown = values_->port,
            .tellsClose = false};
}

} // namespace simulator
