#include "simulator/web/gate.h"

#include "simulator/handset/hex.h"
#include "simulator/lines/descriptor.h"

#include <array>
#include <cstdint>
#include <utility>

#include <unistd.h>

namespace simulator {
namespace {

std::string NewToken()
{
    std::array<std::uint8_t, 16> bytes{};
    Checked(getentropy(bytes.data(), bytes.size()), "getentropy");
    return ToHex(bytes);
}

// Takes as long for every text of a size, so that nobody learns a token digit by digit.
bool IsSame(std::string_view wanted, std::string_view given)
{
    if (wanted.size() != given.size())
        return false;
    int difference = 0;
    for (std::size_t i = 0; i < wanted.size(); ++i)
        difference |= wanted[i] ^ given[i];
    return difference == 0;
}

} // namespace

Gate::Gate(std::string authority) : authority_(std::move(authority)), token_(NewToken()) {}

bool Gate::Admits(std::string_view host, std::string_view origin, std::string_view token) const
{
    const bool isOwn = origin.empty() || origin == "http://" + authority_;
    return host == authority_ && isOwn && IsSame(token_, token);
}

} // namespace simulator
