// Stands in for panel.cpp where the HTTP library is not installed.
#include "simulator/web/panel.h"

#include <stdexcept>

namespace simulator {

class Panel::Server
{
};

Panel::Panel(Control&, std::uint16_t)
{
    throw std::runtime_error("this phnsim was built without its panel: libcpp-httplib-dev was not there");
}

Panel::~Panel() = default;

std::string Panel::Address() const
{
    return {};
}

void Panel::Show(const Exchange&) {}

void Panel::Say(std::string_view) {}

} // namespace simulator
