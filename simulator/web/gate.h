// Who may use the panel: who has the token, and comes from the panel's own page or from no page at all.
// Any page in the same browser can send requests to 127.0.0.1, under any name that its DNS server makes of it.
#pragma once

#include <string>
#include <string_view>

namespace simulator {

class Gate
{
public:
    // `authority` is the address's host and port: "127.0.0.1:8080". Throws std::system_error without random numbers.
    explicit Gate(std::string authority);

    // The headers Host and Origin, which is empty where there is none, and the token of the request's address.
    bool Admits(std::string_view host, std::string_view origin, std::string_view token) const;

    const std::string& Token() const { return token_; }
    std::string Address() const { return "http://" + authority_ + "/?token=" + token_; }

private:
    const std::string authority_;
    const std::string token_;
};

} // namespace simulator
