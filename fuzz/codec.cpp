// The steps of the frame codec alone, on any bytes and with any room: what has no room is refused and written nowhere
// else, what is stuffed comes back, in however many pieces, and the check value is that of the simulated handset, which
// reckons bit by bit.
#include <memory>
#include <vector>

#include "fuzz/input.h"
#include "fuzz/require.h"
#include "link/frame_codec.h"
#include "simulator/handset/frame.h"

namespace {

using fuzz::Bytes;
using fuzz::Require;

// The caller's room, in memory of its own; of no size, there is none.
struct Room
{
    std::unique_ptr<std::uint8_t[]> bytes;
    DWORD size;

    explicit Room(DWORD room) : bytes(room ? new std::uint8_t[room] : nullptr), size(room) {}
    std::uint8_t* Get() const { return bytes.get(); }
};

void CheckDecoding(std::span<const std::uint8_t> stuffed, std::span<const std::uint8_t> plain, std::size_t cut)
{
    CFrameCodec codec;
    codec.BeginDecode();
    Bytes decoded(plain.size() + 1);
    DWORD done = 0;
    for (const auto piece : {stuffed.first(cut), stuffed.subspan(cut)}) {
        DWORD count = 0;
        Require(codec.Decode(piece.data(), static_cast<DWORD>(piece.size()), decoded.data() + done,
                             static_cast<DWORD>(decoded.size()) - done, &count));
        done += count;
    }
    decoded.resize(done);
    Require(std::ranges::equal(decoded, plain));
}

void Encode(std::span<const std::uint8_t> plain, DWORD size)
{
    const Room room(size);
    DWORD count = 0;
    if (CFrameCodec().Encode(plain.data(), static_cast<DWORD>(plain.size()), room.Get(), size, &count) && count > 0)
        CheckDecoding({room.Get(), count - 1}, plain.first(plain.size() - 1), size % count);
}

void Decode(std::span<const std::uint8_t> stuffed, DWORD size)
{
    const Room room(size);
    DWORD count = 0;
    CFrameCodec().Decode(stuffed.data(), static_cast<DWORD>(stuffed.size()), room.Get(), size, &count);
    Require(count <= size);
}

// With the identifier that no request has had yet.
void TakeApart(std::span<const std::uint8_t> frame, DWORD size)
{
    const Room room(size);
    const DWORD length = static_cast<DWORD>(frame.size());
    CFrameCodec codec;
    codec.CheckSize(frame.data(), length);
    DWORD count = 0;
    if (codec.DecomposeData(frame.data(), length, room.Get(), size, &count))
        Require(count <= size);
}

void Compose(std::span<const std::uint8_t> record, DWORD size)
{
    const Room room(size);
    DWORD count = 0;
    if (!CFrameCodec().ComposeData(record.data(), static_cast<DWORD>(record.size()), room.Get(), size, &count))
        return;
    Require(count <= size && room.bytes[count - 1] == simulator::kFlag);
    const auto request = simulator::ParseRequest({room.Get(), count - 1});
    Require(request.reason.empty() && request.sequence == 1 && std::ranges::equal(request.record, record));
}

// The last byte counts by its low bits.
void CheckCheck(std::span<const std::uint8_t> bytes, unsigned more)
{
    const std::size_t whole = bytes.size() - (bytes.empty() ? 0 : 1);
    unsigned check = static_cast<std::uint16_t>(~simulator::CheckValue(bytes.first(whole)));
    for (unsigned bit = 0; whole < bytes.size() && bit < more; ++bit)
        check = check >> 1 ^ ((check ^ bytes[whole] >> bit) & 1u) * 0x8408u;
    Require(CheckSequence(bytes.data(), 8 * whole + (whole < bytes.size() ? more : 0)) ==
            static_cast<std::uint16_t>(~check));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input({data, size});
    const DWORD room = input.Word();
    const std::span<const std::uint8_t> rest = input.Take(input.Left());
    const std::vector<std::uint8_t> exact(rest.begin(), rest.end()); // reading beyond it is found out
    Encode(exact, room);
    Decode(exact, room);
    TakeApart(exact, room);
    Compose(exact, room);
    CheckCheck(exact, room % 8);
    return 0;
}
