#include "fuzz/session/departures.h"

#include <algorithm>
#include <utility>

#include "fuzz/hostile_reply.h"
#include "fuzz/memory_port.h"
#include "fuzz/session/script.h"

namespace fuzz {
namespace {

Bytes Encoded(Form form, unsigned reading, unsigned writing, const Bytes& payload)
{
    const unsigned first = static_cast<unsigned>(form) | reading << 3 | writing << 6;
    return Arguments().Byte(first).Field(payload).bytes;
}

Bytes Honest(Bytes payload)
{
    return Encoded(Form::Framed, 0, 0, payload);
}

Bytes Lengthened(const Bytes& payload, std::size_t size)
{
    const auto zeros = static_cast<unsigned>(size - std::min(size, payload.size()));
    return Arguments().Byte(static_cast<unsigned>(Form::Lengthened)).Byte(zeros / 64).Field(payload).bytes;
}

// The reply's frame and what follows it, in two reads, of which the second ends so.
Bytes Followed(const Bytes& payload, const Bytes& more, unsigned ending)
{
    const Bytes frame = MemoryPort::Get().Frame(payload);
    return Arguments()
        .Byte(static_cast<unsigned>(Form::RawCut))
        .Field(Arguments().With(frame).With(more).bytes)
        .Byte(1 | ending << 2)
        .Word(static_cast<unsigned>(frame.size()))
        .bytes;
}

Bytes OfEarlier(Bytes payload, unsigned ending)
{
    Bytes followed = Followed(payload, Bytes(20, 0), ending);
    followed[3 + 9] ^= 1; // the sequence identifier
    return followed;
}

Bytes Overwritten(Bytes payload, std::size_t from, std::size_t count, std::uint8_t value)
{
    for (std::size_t i = from; i < std::min(from + count, payload.size()); ++i)
        payload[i] = value;
    return payload;
}

Bytes Resized(Bytes payload, std::size_t size)
{
    payload.resize(size);
    return payload;
}

constexpr Departure kDepartures[] = {
    {"honest", Honest},
    {"late", [](Bytes p) { return Encoded(Form::Framed, 4, 2, p); }},
    {"time-out", [](Bytes p) { return Encoded(Form::Framed, 5, 0, p); }},
    {"read-fails", [](Bytes p) { return Encoded(Form::Framed, 6, 0, p); }},
    {"read-fails-late", [](Bytes p) { return Encoded(Form::Framed, 7, 0, p); }},
    {"write-fails",
     [](Bytes) { return Arguments().Byte(3 << 6 | static_cast<unsigned>(Form::Silence)).Byte(6).bytes; }},
    {"write-fails-late",
     [](Bytes) { return Arguments().Byte(3 << 6 | static_cast<unsigned>(Form::Silence)).Byte(7).bytes; }},
    {"write-time-out",
     [](Bytes) { return Arguments().Byte(3 << 6 | static_cast<unsigned>(Form::Silence)).Byte(5).bytes; }},
    {"silence", [](Bytes) { return Arguments().Byte(static_cast<unsigned>(Form::Silence)).bytes; }},
    {"cut", [](Bytes p) { return Encoded(Form::FramedCut, 0, 0, p); }},
    {"other-sequence",
     [](Bytes p) {
         const Bytes honest = Honest(p);
         return Arguments()
             .Byte(static_cast<unsigned>(Form::Twisted))
             .Byte(9)
             .Byte(1)
             .With({honest.begin() + 1, honest.end()})
             .bytes;
     }},
    {"empty", [](Bytes) { return Honest({}); }},
    {"status", [](Bytes p) { return Honest(Overwritten(std::move(p), 6, 1, 12)); }},
    {"result", [](Bytes p) { return Honest(Overwritten(std::move(p), 8, 1, 1)); }},
    {"short", [](Bytes p) { return Honest(Resized(std::move(p), 9)); }},
    {"long", [](Bytes p) { return Lengthened(p, 8180); }},
    {"too-long", [](Bytes p) { return Lengthened(p, 9000); }},
    {"many", [](Bytes p) { return Honest(Overwritten(std::move(p), 12, 8, 0xFF)); }},
    {"none", [](Bytes p) { return Honest(Overwritten(std::move(p), 12, 8, 0)); }},
    {"full", [](Bytes p) { return Honest(Overwritten(std::move(p), 20, 9000, 'A')); }},
    {"and-more", [](Bytes p) { return Followed(p, Bytes(5, 'x'), 0); }},
    {"earlier", [](Bytes p) { return OfEarlier(p, 0); }},
    {"earlier-fails", [](Bytes p) { return OfEarlier(p, 6); }},
    {"noise", [](Bytes) { return Encoded(Form::Raw, 0, 0, Bytes(40, 0x7E)); }},
};

} // namespace

std::span<const Departure> Departures()
{
    return kDepartures;
}

} // namespace fuzz
