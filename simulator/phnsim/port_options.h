// The options of phnsim that say how its handset is reached, which differ from system to system.
#pragma once

#include "simulator/lines/simulator.h"

#include <functional>
#include <memory>
#include <string>

namespace CLI {
class App;
}

namespace simulator {

struct PortChoice
{
    std::function<LineOpener()> open; // throws std::exception when the port cannot be offered here
    std::function<LineOpener(const std::string& device)> openHandset; // the port of one, as --between names it
    PortKind kind = PortKind::Diagnostic;
    std::string shown; // the port, for people and programs
    bool tellsClose = true;
};

class PortOptions
{
public:
    explicit PortOptions(CLI::App& app);
    ~PortOptions();
    PortOptions(const PortOptions&) = delete;
    PortOptions& operator=(const PortOptions&) = delete;

    // After the command line has been parsed. `usual` is the kind of port where none of the options is given, which
    // only Linux allows.
    PortChoice Choice(PortKind usual) const;

private:
    struct Values;
    std::unique_ptr<Values> values_;
};

} // namespace simulator
