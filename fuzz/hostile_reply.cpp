#include "fuzz/hostile_reply.h"

#include <algorithm>

namespace fuzz {
namespace {

constexpr unsigned kForms = 7;

Outcome Choose(unsigned bits)
{
    return bits < 4 ? Outcome::Now : static_cast<Outcome>(bits - 3);
}

Bytes Twisted(Bytes frame, unsigned position, std::uint8_t value)
{
    constexpr unsigned kHeader = 13;
    frame[position % std::min<std::size_t>(kHeader, frame.size())] ^= value;
    return frame;
}

std::vector<Piece> Cut(Input& input, std::span<const std::uint8_t> bytes, Outcome outcome)
{
    const std::uint8_t bits = input.Byte();
    std::vector<Piece> pieces = CutInPieces(input, bits % 4u, bytes, outcome);
    if (const Outcome last = Choose(bits >> 2 & 7u); last != Outcome::Now)
        pieces.back().outcome = last;
    return pieces;
}

std::vector<Piece> PiecesOf(Input& input, Form form, bool isFramed, Outcome outcome)
{
    const auto body = [&] {
        const auto field = input.Field();
        return isFramed ? MemoryPort::Get().Frame(field) : Bytes(field.begin(), field.end());
    };
    switch (form) {
    case Form::Framed:
        return {{body(), outcome}};
    case Form::FramedCut:
        return Cut(input, body(), outcome);
    case Form::Twisted: {
        const std::uint8_t position = input.Byte();
        const std::uint8_t value = input.Byte();
        return isFramed ? std::vector<Piece>{{Twisted(body(), position, value), outcome}} : std::vector<Piece>{};
    }
    case Form::Raw: {
        const auto field = input.Field();
        return {{Bytes(field.begin(), field.end()), outcome}};
    }
    case Form::RawCut:
        return Cut(input, input.Field(), outcome);
    case Form::Silence:
        break;
    case Form::Lengthened: {
        const std::size_t zeros = 64u * input.Byte();
        const auto field = input.Field();
        Bytes bytes(field.begin(), field.end());
        bytes.resize(bytes.size() + zeros);
        return {{isFramed ? MemoryPort::Get().Frame(bytes) : bytes, outcome}};
    }
    }
    return {};
}

} // namespace

std::vector<Piece> CutInPieces(Input& input, unsigned cuts, std::span<const std::uint8_t> bytes, Outcome outcome)
{
    std::vector<Piece> pieces;
    for (; cuts > 0 && !bytes.empty(); --cuts) {
        const auto piece = bytes.first(input.Word() % bytes.size());
        pieces.push_back({{piece.begin(), piece.end()}, outcome});
        bytes = bytes.subspan(piece.size());
    }
    pieces.push_back({{bytes.begin(), bytes.end()}, outcome});
    return pieces;
}

Reply HostileReply(Input& input, bool isFramed)
{
    const std::uint8_t first = input.Byte();
    Reply reply;
    const unsigned write = first >> 6;
    reply.writing = write < 2 ? Outcome::Now : write == 2 ? Outcome::Later : Choose(input.Byte() % 8u);
    reply.pieces = PiecesOf(input, static_cast<Form>(first % 8u % kForms), isFramed, Choose(first >> 3 & 7u));
    return reply;
}

} // namespace fuzz
