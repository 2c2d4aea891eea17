// Any bytes as what comes back on a diagnostic port, in one to four reads, with and without prompt reads. However they
// are cut: a read that succeeds or fails does the same with the bytes that it took in one piece.
#include <memory>

#include "fuzz/hostile_reply.h"
#include "fuzz/require.h"
#include "link/diagnostic_port.h"
#include "link/prompt_port.h"

namespace {

using fuzz::Bytes;
using fuzz::MemoryPort;

constexpr DWORD kRoom = 8193;
constexpr std::uint8_t kEndless = 0xF0;

struct Delivered
{
    bool isRead = false;
    Bytes payload{};
    Bytes taken{}; // off the line
};

Bytes AllOf(const std::deque<fuzz::Piece>& pieces)
{
    Bytes all;
    for (const fuzz::Piece& piece : pieces)
        all.insert(all.end(), piece.bytes.begin(), piece.bytes.end());
    return all;
}

Delivered ReadOver(DP& object, const std::deque<fuzz::Piece>& pieces)
{
    MemoryPort& port = MemoryPort::Get();
    HANDLE const handle = CreateFileA("port", 0, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    object.Attach(handle, nullptr);
    port.onWrite = [&](std::span<const std::uint8_t>) { return port.pieces = pieces, fuzz::Outcome::Now; };
    DWORD count = 0;
    DWORD error = 0;
    fuzz::Require(object.Write(handle, "", 0, &count, &error));
    const std::unique_ptr<std::uint8_t[]> payload(new std::uint8_t[kRoom]); // written beyond, it is found out
    Delivered delivered;
    delivered.isRead = object.Read(handle, payload.get(), kRoom, &count, &error, 1000);
    CloseHandle(handle);
    fuzz::Require(count <= kRoom);
    if (delivered.isRead)
        delivered.payload.assign(payload.get(), payload.get() + count);
    delivered.taken = AllOf(pieces);
    delivered.taken.resize(delivered.taken.size() - AllOf(port.pieces).size());
    return delivered;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input({data, size});
    const std::uint8_t bits = input.Byte();
    MemoryPort::Get().writes = 1; // that of each port below
    const auto field = input.Field();
    Bytes bytes = bits & 2 ? MemoryPort::Get().Frame(field) : Bytes(field.begin(), field.end());
    if (bits == kEndless || bits == (kEndless | 1))
        bytes.resize(60'000); // more than a port takes
    const auto cut =
        fuzz::CutInPieces(input, input.Byte() % 4u, bytes, bits & 4 ? fuzz::Outcome::Later : fuzz::Outcome::Now);
    const std::unique_ptr<DP> object = bits & 1 ? std::make_unique<CPromptPort>("port") : std::make_unique<DP>("port");
    const Delivered delivered = ReadOver(*object, {cut.begin(), cut.end()});
    DP whole("port");
    const Delivered same = ReadOver(whole, {{delivered.taken}});
    fuzz::Require(delivered.isRead == same.isRead && delivered.payload == same.payload);
    return 0;
}
