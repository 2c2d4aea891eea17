// What a packet says: the record in it and the fields in that, from its bytes alone. A reply is understood by the
// request that it answers, so packets go through one Dissector in their order.
#pragma once

#include "simulator/handset/exchange.h"
#include "simulator/recording/layout.h"
#include "simulator/recording/packet.h"

#include <deque>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace simulator {

struct Dissection
{
    enum class Kind
    {
        Closing,
        Framed, // `plain` is the frame before stuffing, with its check value, without the flag
        Raw,    // a bare record, or a bare payload
        At,     // AT lines, or an answer to them
        Unknown,
    };
    Kind kind = Kind::Unknown;
    Bytes plain{};
    std::vector<PlacedField> fields{}; // of `plain`; what lies in none of them, nobody interprets
    bool isCheckRight = true;          // hosts take a reply whose check value is wrong
    // Request or reply only, as the packet is the one or the other; `rejection` is why it is not understood.
    Exchange exchange{};
};

// Whether a line of a modem port, without its end, is a command.
bool IsAtCommand(const std::string& line);

class Dissector
{
public:
    explicit Dissector(PortKind kind) : kind_(kind) {}

    Dissection Dissect(const Packet& packet);

private:
    struct Request
    {
        std::uint32_t command;
        std::optional<std::uint32_t> sequence;
        Bytes header;
    };

    void DissectRequestFrame(Dissection& dissection);
    void DissectReplyFrame(Dissection& dissection);
    void DissectModemRequest(Dissection& dissection);
    void DissectModemReply(Dissection& dissection);
    static void PlaceReply(Dissection& dissection, const Request& request, std::size_t offset, std::size_t end);
    void Remember(const Exchange& exchange, std::span<const std::uint8_t> header);
    const Request* RequestOf(std::optional<std::uint32_t> sequence) const;

    const PortKind kind_;
    std::deque<Request> requests_; // the latest ones, the last one first
};

} // namespace simulator
